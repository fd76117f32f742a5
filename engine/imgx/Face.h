#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "ImagingParts.h"
#include "ImagingSettings.h"
#include "PictureOwner.h"
#include "imaging/contract/ImgX.h"

namespace kestrel::engine {

/// Implements the members that `ImageView` and `ImgX` share; `Contract` is one of the two. The object owns
/// its picture.
template <typename Contract>
class Face : public Contract, protected PictureOwner {
 public:
  kestrel::Image* Image() override { return picture().empty() ? nullptr : &parts_.image; }
  kestrel::Document& Document() override { return parts_.document; }
  kestrel::Draw& Draw() override { return parts_.draw; }
  kestrel::Effects& Effects() override { return parts_.effects; }
  kestrel::Writer& Writer() override { return parts_.writer; }
  kestrel::Alpha& Alpha() override { return parts_.alpha; }
  const kestrel::Colors& Colors() const override { return parts_.colors; }

  void JPEGQuality(std::int32_t value) override { settings_->jpegQuality = std::clamp(value, 1, 100); }
  std::int32_t JPEGQuality() const override { return settings_->jpegQuality; }

 protected:
  Face(ClipboardPort& clipboard, std::shared_ptr<ImagingSettings> settings)
      : settings_(std::move(settings)), parts_(*this, clipboard) {}

  ImagingSettings& settings() override { return *settings_; }

  std::shared_ptr<ImagingSettings> settings_;
  ImagingParts parts_;
};

}  // namespace kestrel::engine
