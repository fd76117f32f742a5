#pragma once

#include "ClipboardPort.h"
#include "PictureOwner.h"
#include "imaging/contract/Writer.h"

namespace kestrel::engine {

class WriterPart final : public kestrel::Writer {
 public:
  WriterPart(PictureOwner& owner, ClipboardPort& clipboard) : owner_(owner), clipboard_(clipboard) {}

  void ToFile(const std::string& filename, std::int32_t format, std::int32_t options,
              bool overwrite) override;
  void ToClipboard() override;
  PicturePtr ToPicture() override;

 private:
  PictureOwner& owner_;
  ClipboardPort& clipboard_;
};

}  // namespace kestrel::engine
