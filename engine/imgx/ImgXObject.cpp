#include "ImgXObject.h"

#include <utility>

namespace kestrel::engine {

ImgXObject::ImgXObject(ClipboardPort& clipboard, std::shared_ptr<EditablePicture> bound)
    : Face(clipboard), surface_(*this), picture_(std::move(bound)), bound_(picture_ != nullptr) {
  if (!bound_) picture_ = std::make_shared<EditablePicture>();
}

void ImgXObject::putPicture(PictureState state, const std::string& undoName) {
  if (!bound_) {
    picture_->put(std::move(state), undoName);
    return;
  }
  auto own = std::make_shared<EditablePicture>();
  own->put(std::move(state), undoName);
  picture_ = std::move(own);
  bound_ = false;
}

}  // namespace kestrel::engine
