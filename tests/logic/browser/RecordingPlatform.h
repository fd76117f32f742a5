#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/headless/Platform.h"

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

/// The headless platform with recorded operations on files.
class RecordingPlatform final : public Platform {
 public:
  explicit RecordingPlatform(headless::Setup setup)
      : inner_(std::move(setup)), fileHelpers_(inner_.FileHelpers()) {}

  headless::Platform& inner() { return inner_; }

  std::shared_ptr<ImgX> CreateImgX() override { return inner_.CreateImgX(); }
  std::shared_ptr<Colors> CreateColors() override { return inner_.CreateColors(); }
  std::unique_ptr<ImgXDialog> CreateImgXDialog() override { return inner_.CreateImgXDialog(); }
  std::unique_ptr<Form> CreateForm(const std::string& name) override { return inner_.CreateForm(name); }
  std::unique_ptr<HelpViewer> CreateHelpViewer() override { return inner_.CreateHelpViewer(); }
  std::unique_ptr<SinkHolder> CreateSinkHolder() override { return inner_.CreateSinkHolder(); }
  std::unique_ptr<MouseTracker> CreateMouseTracker() override { return inner_.CreateMouseTracker(); }
  std::unique_ptr<Canvas> CreateCanvas(std::int32_t width, std::int32_t height) override {
    return inner_.CreateCanvas(width, height);
  }

  kestrel::FormUtility& FormUtility() override { return inner_.FormUtility(); }
  kestrel::FormSkin& FormSkin() override { return inner_.FormSkin(); }
  kestrel::WindowFunctions& WindowFunctions() override { return inner_.WindowFunctions(); }
  kestrel::WindowPositions& WindowPositions() override { return inner_.WindowPositions(); }
  kestrel::RegistryStore& RegistryStore() override { return inner_.RegistryStore(); }
  RecordingFileHelpers& FileHelpers() override { return fileHelpers_; }
  kestrel::UserInterface& UserInterface() override { return inner_.UserInterface(); }
  kestrel::Clipboard& Clipboard() override { return inner_.Clipboard(); }
  kestrel::Shell& Shell() override { return inner_.Shell(); }
  kestrel::Screen& Screen() override { return inner_.Screen(); }
  const AppInfo& App() override { return inner_.App(); }

  std::unique_ptr<DebugClientLibrary> CreateDebugClientLibrary() override { return nullptr; }
  kestrel::ObjectFactory& ObjectFactory() override { return inner_.ObjectFactory(); }
  kestrel::StackResolver& StackResolver() override { return inner_.StackResolver(); }
  void Retire(std::shared_ptr<void> object) override { inner_.Retire(std::move(object)); }

 private:
  headless::Platform inner_;
  RecordingFileHelpers fileHelpers_;
};

}  // namespace kestrel
