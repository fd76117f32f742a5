#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/headless/Platform.h"
#include "tests/logic/fakes/FailingPositions.h"
#include "tests/logic/fakes/ForwardingPlatform.h"

namespace kestrel {

/// Records the operations on files instead of carrying them out; names are the inner object's business.
class RecordingFileHelpers final : public FileHelpers {
 public:
  explicit RecordingFileHelpers(FileHelpers& inner) : inner_(inner) {}

  struct Operation {
    std::string what;
    std::string buffer;
    std::string folder;
    std::int32_t flags = 0;
    WindowHandle owner = 0;
  };

  std::string PathWithoutExtension(const std::string& Path) override {
    return inner_.PathWithoutExtension(Path);
  }
  std::string GetExtension(const std::string& Path, std::int32_t Options) override {
    return inner_.GetExtension(Path, Options);
  }
  std::string GetFileName(const std::string& Path) override { return inner_.GetFileName(Path); }
  std::string ResolvePath(const std::string& Path) override { return inner_.ResolvePath(Path); }
  std::string CompactPath(const std::string& Path, std::int32_t Length,
                          const std::string& Separator) override {
    return inner_.CompactPath(Path, Length, Separator);
  }
  std::string PathSeparator() const override { return inner_.PathSeparator(); }
  bool CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                 WindowHandle Owner) override {
    return record({"copy", Buffer, Folder, Flags, Owner});
  }
  bool MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                 WindowHandle Owner) override {
    return record({"move", Buffer, Folder, Flags, Owner});
  }
  bool DeleteFiles(const std::string& Buffer, const std::string& Folder, std::int32_t Flags,
                   WindowHandle Owner) override {
    return record({"delete", Buffer, Folder, Flags, Owner});
  }

  std::vector<Operation> operations;
  bool result = true;
  std::function<void()> during;

 private:
  bool record(Operation operation) {
    operations.push_back(std::move(operation));
    if (during) during();
    return result;
  }

  FileHelpers& inner_;
};

/// A base, so that the platform exists before what forwards to it.
struct OwnHeadlessPlatform {
  headless::Platform own;
};

/// The headless platform with recorded operations on files.
class RecordingPlatform final : private OwnHeadlessPlatform, public fakes::ForwardingPlatform {
 public:
  explicit RecordingPlatform(headless::Setup setup)
      : OwnHeadlessPlatform{headless::Platform(std::move(setup))},
        ForwardingPlatform(own),
        fileHelpers_(own.FileHelpers()) {}

  headless::Platform& inner() { return own; }

  kestrel::RegistryStore& RegistryStore() override {
    if (storeFails) throw RuntimeError(err::kDeviceIO, "The settings cannot be written.");
    return own.RegistryStore();
  }
  kestrel::WindowPositions& WindowPositions() override {
    if (positionsFail) return failingPositions_;
    return own.WindowPositions();
  }
  RecordingFileHelpers& FileHelpers() override { return fileHelpers_; }

  bool storeFails = false;
  bool positionsFail = false;

 private:
  fakes::FailingPositions failingPositions_;
  RecordingFileHelpers fileHelpers_;
};

}  // namespace kestrel
