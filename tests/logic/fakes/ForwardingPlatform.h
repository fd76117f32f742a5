#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "imaging/contract/Platform.h"

namespace kestrel::fakes {

/// Another platform's objects and services. A test derives from it and replaces some.
class ForwardingPlatform : public Platform {
 public:
  /// `inner` must outlive this object; the constructor does not use it yet.
  explicit ForwardingPlatform(Platform& inner) : inner_(inner) {}

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
  kestrel::FileHelpers& FileHelpers() override { return inner_.FileHelpers(); }
  kestrel::UserInterface& UserInterface() override { return inner_.UserInterface(); }
  kestrel::Clipboard& Clipboard() override { return inner_.Clipboard(); }
  kestrel::Shell& Shell() override { return inner_.Shell(); }
  kestrel::Screen& Screen() override { return inner_.Screen(); }
  const kestrel::AppInfo& App() override { return inner_.App(); }

  std::unique_ptr<DebugClientLibrary> CreateDebugClientLibrary() override {
    return inner_.CreateDebugClientLibrary();
  }
  kestrel::ObjectFactory& ObjectFactory() override { return inner_.ObjectFactory(); }
  kestrel::StackResolver& StackResolver() override { return inner_.StackResolver(); }
  void Retire(std::shared_ptr<void> object) override { inner_.Retire(std::move(object)); }

 private:
  Platform& inner_;
};

}  // namespace kestrel::fakes
