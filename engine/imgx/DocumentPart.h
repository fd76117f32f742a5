#pragma once

#include "ClipboardPort.h"
#include "PictureOwner.h"
#include "imaging/contract/Document.h"

namespace kestrel::engine {

class DocumentPart final : public kestrel::Document {
 public:
  DocumentPart(PictureOwner& owner, ClipboardPort& clipboard) : owner_(owner), clipboard_(clipboard) {}

  void FromFile(const std::string& filename, std::int32_t page, const std::string& undoName) override;
  void FromPicture(const Picture& picture, const std::string& undoName) override;
  void Paste(const std::string& undoName) override;
  void CopyFrom(ImgX& source, std::int32_t mode, const std::string& undoName) override;
  void NewImage(std::int32_t width, std::int32_t height, const Colour* background, std::int32_t pixelFormat,
                const std::string& undoName) override;

 private:
  PictureOwner& owner_;
  ClipboardPort& clipboard_;
};

}  // namespace kestrel::engine
