#pragma once

#include <memory>
#include <string>

#include "Face.h"
#include "SurfacePart.h"

namespace kestrel::engine {

/// The contract's free-standing picture on this engine.
///
/// One that a view gives out is bound to the view's picture, and shares it, until another picture is put into
/// it. It may outlive the view.
class ImgXObject : public Face<ImgX> {
 public:
  /// The clipboard must outlive the object.
  explicit ImgXObject(ClipboardPort& clipboard) : ImgXObject(clipboard, nullptr) {}
  /// Bound to a picture.
  ImgXObject(ClipboardPort& clipboard, std::shared_ptr<EditablePicture> bound);

  std::string TypeName() const override { return "ImgX"; }
  kestrel::Surface& Surface() override { return surface_; }
  OLE_COLOR BackColor() const override { return backColor_; }
  void BackColor(OLE_COLOR value) override { backColor_ = value; }

  using PictureOwner::loadedPicture;

 protected:
  EditablePicture& picture() override { return *picture_; }
  void putPicture(PictureState state, const std::string& undoName) override;
  OLE_COLOR blankColor() const override { return backColor_; }

 private:
  SurfacePart surface_;
  std::shared_ptr<EditablePicture> picture_;
  bool bound_;
  OLE_COLOR backColor_ = kNoColor;
};

}  // namespace kestrel::engine
