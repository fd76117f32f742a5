#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "../editing/RecordedFaces.h"
#include "base/RuntimeError.h"
#include "editor/ImageProcessingCtl.h"
#include "platform/headless/Platform.h"
#include "settings/modProcessing.h"
#include "tests/logic/fakes/FakePlatform.h"

namespace kestrel {

[[noreturn]] inline void failByChoice() { throw RuntimeError(err::kInternal, "Chosen to fail."); }

/// The headless platform with an optional reporting object, and services that fail on request of a test.
class ReportingPlatform final : public recorded::RecordedPlatform {
 public:
  ReportingPlatform(Log& log, headless::Platform& inner) : RecordedPlatform(log, inner) {}

  std::string failing;
  bool reporterInstalled = false;
  std::vector<fakes::Report> reports;

  const AppInfo& App() override {
    maybeFail("App");
    return RecordedPlatform::App();
  }
  kestrel::Screen& Screen() override {
    maybeFail("Screen");
    return RecordedPlatform::Screen();
  }
  kestrel::FormUtility& FormUtility() override {
    maybeFail("FormUtility");
    return RecordedPlatform::FormUtility();
  }
  kestrel::WindowFunctions& WindowFunctions() override {
    maybeFail("WindowFunctions");
    return RecordedPlatform::WindowFunctions();
  }
  kestrel::WindowPositions& WindowPositions() override {
    maybeFail("WindowPositions");
    return RecordedPlatform::WindowPositions();
  }
  kestrel::FileHelpers& FileHelpers() override {
    maybeFail("FileHelpers");
    return RecordedPlatform::FileHelpers();
  }
  kestrel::ObjectFactory& ObjectFactory() override { return factory_; }

 private:
  struct Factory final : kestrel::ObjectFactory {
    explicit Factory(ReportingPlatform& owner) : platform(owner) {}
    std::unique_ptr<ErrorReporter> CreateErrorReporter(const std::string&) override {
      if (!platform.reporterInstalled) throw RuntimeError(err::kCannotCreateObject, "Not installed.");
      return std::make_unique<fakes::RecordingReporter>(platform.reports);
    }
    ReportingPlatform& platform;
  };

  void maybeFail(const std::string& service) const {
    if (service == failing) failByChoice();
  }

  Factory factory_{*this};
};

/// An apartment on that platform, and a picture file.
class Reports : public testing::Test {
 protected:
  Reports() {
    std::string folder = (std::filesystem::temp_directory_path() / "kestrel-reports-XXXXXX").string();
    folder_ = mkdtemp(folder.data());
    headless::Setup setup;
    setup.scratch = folder_;
    setup.helpFolder = folder_;
    headless_ = std::make_unique<headless::Platform>(std::move(setup));
    platform_ = std::make_unique<ReportingPlatform>(log_, *headless_);
    modProcessing::Attach(*platform_);
    modProcessing::Main();
    picture_ = folder_ + "/open.png";
    const auto picture = headless_->CreateImgX();
    const Colour background(0x00336699);
    picture->Document().NewImage(40, 30, &background);
    picture->Writer().ToFile(picture_, 2);
  }
  ~Reports() override {
    modProcessing::Detach();
    platform_.reset();
    headless_.reset();
    std::filesystem::remove_all(folder_);
  }

  headless::User& user() { return headless_->user(); }

  Log log_;
  std::string folder_;
  std::string picture_;
  std::unique_ptr<headless::Platform> headless_;
  std::unique_ptr<ReportingPlatform> platform_;
};

/// Adds an editor that has started completely.
class EditorReporting : public Reports {
 protected:
  EditorReporting() {
    site_ = headless_->createEditorSite();
    editor_ = std::make_unique<ImageProcessingCtl>(*site_);
    site_->InitProperties();
    editor_->Initialize();
  }
  ~EditorReporting() override {
    platform_->failing.clear();
    editor_.reset();
    site_.reset();
  }

  std::unique_ptr<headless::Site> site_;
  std::unique_ptr<ImageProcessingCtl> editor_;
};

}  // namespace kestrel
