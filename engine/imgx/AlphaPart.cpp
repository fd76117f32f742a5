#include "AlphaPart.h"

#include "Conversions.h"
#include "engine/effects/Flatten.h"

namespace kestrel::engine {

void AlphaPart::Flatten(const Colour& color, const std::string& undoName) {
  EditablePicture& picture = owner_.pictureToChange();
  picture.replacePixels(flatten(picture.bitmap(), pixelOf(color)), undoName);
}

}  // namespace kestrel::engine
