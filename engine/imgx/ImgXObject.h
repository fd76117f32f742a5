#pragma once

#include <memory>
#include <string>

#include "Face.h"
#include "SurfacePart.h"

namespace kestrel::engine {

/// `ImgX` on this engine: a picture independent of a view.
///
/// The object that a view returns is bound to the view: the two share picture and settings until another
/// picture is put into the object. It may outlive the view.
class ImgXObject : public Face<ImgX> {
 public:
  /// The clipboard must outlive the object.
  explicit ImgXObject(ClipboardPort& clipboard);
  /// Bound to a view's picture and settings.
  ImgXObject(ClipboardPort& clipboard, std::shared_ptr<EditablePicture> picture,
             std::shared_ptr<ImagingSettings> settings);

  /// Whether it still works on a view's picture.
  bool isBound() const { return bound_; }

  std::string TypeName() const override { return "ImgX"; }
  kestrel::Surface& Surface() override { return surface_; }
  OLE_COLOR BackColor() const override { return settings_->backColor; }
  void BackColor(OLE_COLOR value) override { settings_->backColor = value; }

  using PictureOwner::loadedPicture;

 protected:
  EditablePicture& picture() override { return *picture_; }
  void putPicture(PictureState state, const std::string& undoName) override;

 private:
  SurfacePart surface_;
  std::shared_ptr<EditablePicture> picture_;
  bool bound_ = false;
  /// Settings of the view it was bound to, kept alive: callers may still hold references to the draw color.
  std::shared_ptr<ImagingSettings> settingsOfView_;
};

}  // namespace kestrel::engine
