#pragma once

#include <string>

#include "FileSystem.h"
#include "imaging/contract/Document.h"
#include "imaging/contract/Writer.h"

namespace kestrel::headless {

/// Maps file names of a simulated file system to the engine's document, which reads the machine's files.
class MappedDocument final : public Document {
 public:
  MappedDocument(const FileSystem& files, Document& inner) : files_(files), inner_(inner) {}

  void FromFile(const std::string& filename, std::int32_t page, const std::string& undoName) override {
    inner_.FromFile(files_.host(filename), page, undoName);
  }
  void FromPicture(const Picture& picture, const std::string& undoName) override {
    inner_.FromPicture(picture, undoName);
  }
  void Paste(const std::string& undoName) override { inner_.Paste(undoName); }
  void CopyFrom(ImgX& source, std::int32_t mode, const std::string& undoName) override {
    inner_.CopyFrom(source, mode, undoName);
  }
  void NewImage(std::int32_t width, std::int32_t height, const Colour* background, std::int32_t pixelFormat,
                const std::string& undoName) override {
    inner_.NewImage(width, height, background, pixelFormat, undoName);
  }

 private:
  const FileSystem& files_;
  Document& inner_;
};

/// Maps file names of a simulated file system to the engine's writer.
class MappedWriter final : public Writer {
 public:
  MappedWriter(const FileSystem& files, Writer& inner) : files_(files), inner_(inner) {}

  void ToFile(const std::string& filename, std::int32_t format, std::int32_t options,
              bool overwrite) override {
    inner_.ToFile(files_.host(filename), format, options, overwrite);
  }
  void ToClipboard() override { inner_.ToClipboard(); }
  PicturePtr ToPicture() override { return inner_.ToPicture(); }

 private:
  const FileSystem& files_;
  Writer& inner_;
};

}  // namespace kestrel::headless
