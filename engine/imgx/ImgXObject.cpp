#include "ImgXObject.h"

#include <utility>

namespace kestrel::engine {

ImgXObject::ImgXObject(ClipboardPort& clipboard)
    : Face(clipboard, std::make_shared<ImagingSettings>()),
      surface_(*this),
      picture_(std::make_shared<EditablePicture>()) {}

ImgXObject::ImgXObject(ClipboardPort& clipboard, std::shared_ptr<EditablePicture> picture,
                       std::shared_ptr<ImagingSettings> settings)
    : Face(clipboard, std::move(settings)), surface_(*this), picture_(std::move(picture)), bound_(true) {}

void ImgXObject::putPicture(PictureState state, const std::string& undoName) {
  if (!bound_) {
    picture_->put(std::move(state), undoName);
    return;
  }
  auto own = std::make_shared<EditablePicture>();
  own->put(std::move(state), undoName);
  auto ownSettings = std::make_shared<ImagingSettings>(*settings_);
  picture_ = std::move(own);
  settingsOfView_ = std::exchange(settings_, std::move(ownSettings));
  bound_ = false;
}

}  // namespace kestrel::engine
