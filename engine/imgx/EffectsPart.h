#pragma once

#include "PictureOwner.h"
#include "engine/pixels/Bitmap.h"
#include "imaging/contract/Effects.h"

namespace kestrel::engine {

class EffectsPart final : public kestrel::Effects {
 public:
  explicit EffectsPart(PictureOwner& owner) : owner_(owner) {}

  void Crop(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
            const std::string& undoName) override;
  void Flip(std::int32_t direction, const std::string& undoName) override;
  void Resize(std::int32_t width, std::int32_t height, std::int32_t resampleMethod,
              const std::string& undoName) override;
  void ResizeCanvas(std::int32_t width, std::int32_t height, const Colour& color, std::int32_t offsetX,
                    std::int32_t offsetY, const std::string& undoName) override;
  void Rotate(float angle, const Colour* color, std::int32_t quality, const std::string& undoName) override;
  void DropShadow(std::int32_t offsetX, std::int32_t offsetY, const Colour& color, double blur, bool grow,
                  const std::string& undoName) override;
  void ReplaceColor(const Colour& from, const Colour& to, double tolerance, std::int32_t mode,
                    const std::string& undoName) override;
  void ApplyPalette(const Palette& palette, bool dither, const std::string& undoName) override;

 private:
  PictureOwner& owner_;
};

}  // namespace kestrel::engine
