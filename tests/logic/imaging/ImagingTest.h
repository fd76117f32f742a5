#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "imaging/modImgX.h"
#include "platform/headless/Platform.h"
#include "settings/modProcessing.h"

namespace kestrel {

/// The image helpers on a headless platform.
class ImagingTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-imaging-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No scratch folder could be made.");
    scratch_ = name;
    headless::Setup setup;
    setup.scratch = scratch_;
    platform_ = std::make_unique<headless::Platform>(std::move(setup));
    platform_->user().onComplaint = [](const std::string& text) { ADD_FAILURE() << text; };
    modProcessing::Attach(*platform_);
  }
  void TearDown() override {
    modProcessing::Detach();
    platform_.reset();
    std::filesystem::remove_all(scratch_);
  }

  headless::Platform& platform() { return *platform_; }
  std::string path(const std::string& name) { return scratch_ + "/" + name; }

  static std::int32_t colorAt(const Image& image, std::int32_t x, std::int32_t y) {
    const Colour color = image.GetPixel(x, y);
    return color.Red() | (color.Green() << 8) | (color.Blue() << 16);
  }

 private:
  std::string scratch_;
  std::unique_ptr<headless::Platform> platform_;
};

}  // namespace kestrel
