#pragma once

#include "PictureOwner.h"
#include "imaging/contract/Draw.h"

namespace kestrel::engine {

class DrawPart final : public kestrel::Draw {
 public:
  explicit DrawPart(PictureOwner& owner) : owner_(owner) {}

  Colour& Color() override { return owner_.settings().drawColor; }
  std::int32_t FillMode() const override { return owner_.settings().fillMode; }
  void FillMode(std::int32_t value) override;
  std::int32_t PenSetting() const override { return owner_.settings().penWidth; }
  void PenSetting(std::int32_t value) override;

  void Rectangle(const Point& start, const Point& end, std::int32_t radiusX, std::int32_t radiusY,
                 const std::string& undoName) override;
  void Image(const kestrel::Image& source, std::int32_t x, std::int32_t y, const Colour* maskColor,
             float opacity, bool blend, const std::string& undoName) override;
  void ImageWithAlpha(const kestrel::Image& source, std::int32_t x, std::int32_t y,
                      const std::string& undoName) override;

 private:
  PictureOwner& owner_;
};

}  // namespace kestrel::engine
