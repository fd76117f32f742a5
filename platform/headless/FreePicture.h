#pragma once

#include "FileMapping.h"
#include "engine/imgx/ImgXObject.h"

namespace kestrel::headless {

/// The engine's free-standing picture with the file names of the simulated file system.
class FreePicture final : public engine::ImgXObject {
 public:
  FreePicture(engine::ClipboardPort& clipboard, const FileSystem& files)
      : ImgXObject(clipboard), document_(files, parts_.document), writer_(files, parts_.writer) {}

  kestrel::Document& Document() override { return document_; }
  kestrel::Writer& Writer() override { return writer_; }

 private:
  MappedDocument document_;
  MappedWriter writer_;
};

}  // namespace kestrel::headless
