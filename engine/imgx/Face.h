#pragma once

#include "ImagingParts.h"
#include "PictureOwner.h"
#include "imaging/contract/ImgX.h"

namespace kestrel::engine {

/// The members that a view and a free-standing picture share, put into `Contract`, one of the two. The object
/// they make is its picture's owner.
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

  void JPEGQuality(std::int32_t value) override { parts_.writer.quality(value); }
  std::int32_t JPEGQuality() const override { return parts_.writer.quality(); }

 protected:
  explicit Face(ClipboardPort& clipboard) : parts_(*this, clipboard) {}

  ImagingParts parts_;
};

}  // namespace kestrel::engine
