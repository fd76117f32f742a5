#include "EffectsPart.h"

#include "Conversions.h"
#include "engine/effects/Canvas.h"
#include "engine/effects/Crop.h"
#include "engine/effects/DropShadow.h"
#include "engine/effects/Flip.h"
#include "engine/effects/GrayScale.h"
#include "engine/effects/ReplaceColor.h"
#include "engine/effects/Rotate.h"
#include "engine/effects/resample/Resize.h"
#include "imaging/contract/PictureLimits.h"

namespace kestrel::engine {

static_assert(Bitmap::kMaxSide == kLongestSide && Bitmap::kMaxPixels == kMostPixels);

void EffectsPart::Crop(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height,
                       const std::string& undoName) {
  EditablePicture& picture = owner_.pictureToChange();
  picture.replacePixels(crop(picture.bitmap(), left, top, width, height), undoName);
}

void EffectsPart::Flip(std::int32_t direction, const std::string& undoName) {
  EditablePicture& picture = owner_.pictureToChange();
  picture.replacePixels(flip(picture.bitmap(), static_cast<FlipDirection>(direction)), undoName);
}

void EffectsPart::Resize(std::int32_t width, std::int32_t height, std::int32_t resampleMethod,
                         const std::string& undoName) {
  EditablePicture& picture = owner_.pictureToChange();
  picture.replacePixels(resize(picture.bitmap(), width, height, static_cast<ResampleMethod>(resampleMethod)),
                        undoName);
}

void EffectsPart::ResizeCanvas(std::int32_t width, std::int32_t height, const Colour& color,
                               std::int32_t offsetX, std::int32_t offsetY, const std::string& undoName) {
  EditablePicture& picture = owner_.pictureToChange();
  picture.replacePixels(resizeCanvas(picture.bitmap(), width, height, pixelOf(color), offsetX, offsetY),
                        undoName);
}

void EffectsPart::Rotate(float angle, const Colour* color, std::int32_t quality,
                         const std::string& undoName) {
  if (quality != 0) throw RuntimeError(err::kInvalidCall, "The only rotation quality is 0.");
  EditablePicture& picture = owner_.pictureToChange();
  const Pixel background = color == nullptr ? Pixel() : pixelOf(*color);
  picture.replacePixels(rotate(picture.bitmap(), static_cast<double>(angle), background), undoName);
}

void EffectsPart::DropShadow(std::int32_t offsetX, std::int32_t offsetY, const Colour& color, double blur,
                             bool grow, const std::string& undoName) {
  EditablePicture& picture = owner_.pictureToChange();
  picture.replacePixels(dropShadow(picture.bitmap(), offsetX, offsetY, pixelOf(color), blur, grow), undoName);
}

void EffectsPart::ReplaceColor(const Colour& from, const Colour& to, double tolerance, std::int32_t mode,
                               const std::string& undoName) {
  if (mode != 0) throw RuntimeError(err::kInvalidCall, "The only mode of replacing colors is 0.");
  EditablePicture& picture = owner_.pictureToChange();
  picture.replacePixels(replaceColor(picture.bitmap(), pixelOf(from), pixelOf(to), tolerance), undoName);
}

void EffectsPart::ApplyPalette(const Palette& palette, bool /*dither*/, const std::string& undoName) {
  if (palette.Type() != kPaletteGrayScale) {
    throw RuntimeError(err::kInvalidCall, "The palette " + std::to_string(palette.Type()) + " is unknown.");
  }
  EditablePicture& picture = owner_.pictureToChange();
  picture.replacePixels(grayScale(picture.bitmap()), undoName);
}

}  // namespace kestrel::engine
