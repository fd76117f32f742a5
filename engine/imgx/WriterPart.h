#pragma once

#include "ClipboardPort.h"
#include "PictureOwner.h"
#include "imaging/contract/Writer.h"

namespace kestrel::engine {

class WriterPart final : public kestrel::Writer {
 public:
  /// The quality that JPEG files are written in where none was set.
  static constexpr std::int32_t kDefaultQuality = 75;

  WriterPart(PictureOwner& owner, ClipboardPort& clipboard) : owner_(owner), clipboard_(clipboard) {}

  void ToFile(const std::string& filename, std::int32_t format, std::int32_t options,
              bool overwrite) override;
  void ToClipboard() override;
  PicturePtr ToPicture() override;

  std::int32_t quality() const { return quality_; }
  /// Values outside 1 to 100 are brought to the nearer end.
  void quality(std::int32_t value);

 private:
  PictureOwner& owner_;
  ClipboardPort& clipboard_;
  std::int32_t quality_ = kDefaultQuality;
};

}  // namespace kestrel::engine
