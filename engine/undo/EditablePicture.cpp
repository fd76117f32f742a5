#include "EditablePicture.h"

#include <algorithm>
#include <utility>

#include "imaging/contract/ImageView.h"

namespace kestrel::engine {
namespace {

/// Beyond this, exchanging tiles takes too long and the whole picture is kept instead. The bound grows with
/// the picture, because copying a large one takes long, too.
std::size_t mostTileBytes(const Bitmap& bitmap) {
  return std::max(std::size_t{8} << 20, bitmap.byteSize() / 8);
}

Rectangle united(const Rectangle& a, const Rectangle& b) {
  if (a.Width == 0 || a.Height == 0) return b;
  const std::int32_t left = std::min(a.Left, b.Left);
  const std::int32_t top = std::min(a.Top, b.Top);
  return {left, top, std::max(a.Left + a.Width, b.Left + b.Width) - left,
          std::max(a.Top + a.Height, b.Top + b.Height) - top};
}

bool isStep(const std::string& undoName) { return undoName != kNoUndo; }

Rectangle boundsOf(const Bitmap& bitmap) { return {0, 0, bitmap.width(), bitmap.height()}; }

}  // namespace

void EditablePicture::replacePixels(Bitmap bitmap, const std::string& undoName) {
  PictureState next = state_;
  next.bitmap = std::move(bitmap);
  exchangeWith(std::move(next), undoName, false);
}

void EditablePicture::put(PictureState picture, const std::string& undoName) {
  exchangeWith(std::move(picture), undoName, true);
}

void EditablePicture::exchangeWith(PictureState next, const std::string& undoName, bool otherPicture) {
  rollBackPainting();
  if (isStep(undoName)) {
    UndoStack::Before before = state_;
    history_.record(undoName, before);
    std::swap(state_, next);
  } else {
    // Swap first: the old pixels then have one owner less, so copy-on-write need not copy them.
    std::swap(state_, next);
    UndoStack::Before before = std::move(next);
    try {
      history_.absorb(before);
    } catch (...) {
      std::swap(state_, std::get<PictureState>(before));
      throw;
    }
  }
  changed({boundsOf(state_.bitmap), otherPicture, otherPicture && !isStep(undoName)});
}

void EditablePicture::paint(std::span<const Rectangle> areas, const std::string& undoName,
                            const std::function<void(Pixels)>& work) {
  Painting painting(*this);
  painting.touch(areas);
  if (painting.touched().Width == 0) return;
  work(painting.pixels());
  painting.commit(undoName);
}

void EditablePicture::rollBackPainting() {
  if (open_ != nullptr) open_->rollBack();
}

void EditablePicture::step(bool (UndoStack::*direction)(PictureState&)) {
  rollBackPainting();
  if ((history_.*direction)(state_)) changed({boundsOf(state_.bitmap)});
}

EditablePicture::UndoPoint EditablePicture::createUndoPoint(const std::string& name) {
  rollBackPainting();
  UndoPoint point{state_, modified_, {}};
  if (isStep(name)) {
    point.steps = history_.recordPoint(name, state_);
    stepsChanged();
  }
  return point;
}

void EditablePicture::takeBack(UndoPoint point) {
  rollBackPainting();
  if (!history_.takeBack(point.steps)) return;
  const bool samePicture = state_.bitmap.sharesPixelsWith(point.picture.bitmap);
  state_ = std::move(point.picture);
  modified(point.modified);
  if (samePicture) {
    stepsChanged();
  } else if (onChange) {
    onChange({boundsOf(state_.bitmap)});
  }
}

void EditablePicture::undoLevels(std::int32_t value) {
  history_.levels(value);
  stepsChanged();
}

void EditablePicture::undoMemoryLimit(std::size_t bytes) {
  history_.memoryLimit(bytes);
  stepsChanged();
}

void EditablePicture::modified(bool value) {
  if (std::exchange(modified_, value) != value && onModifiedChange) onModifiedChange();
}

void EditablePicture::changed(const PictureChange& change) {
  modified(true);
  if (onChange) onChange(change);
}

void EditablePicture::stepsChanged() const {
  if (onStepsChange) onStepsChange();
}

Painting::Painting(EditablePicture& picture) : picture_(picture) {
  picture_.rollBackPainting();
  picture_.open_ = this;
}

void Painting::rollBack() {
  if (ended()) return;
  picture_.open_ = nullptr;
  putBack();
  if (touched_.Width > 0 && picture_.onRollBack) picture_.onRollBack(touched_);
}

void Painting::putBack() noexcept {
  if (auto* const whole = std::get_if<PictureState>(&before_)) {
    std::swap(picture_.state_, *whole);
    return;
  }
  auto* const tiles = std::get_if<KeptTiles>(&before_);
  if (tiles == nullptr || tiles->empty()) return;
  try {
    tiles->exchangeWith(pixels());
  } catch (const std::exception&) {
    // The bitmap was shared meanwhile and there is no memory for a copy: the drawing stays.
  }
}

void Painting::touch(std::span<const Rectangle> areas) {
  std::size_t bytes = 0;
  for (const Rectangle& area : areas) {
    bytes += 4 * static_cast<std::size_t>(area.Width) * static_cast<std::size_t>(area.Height);
  }
  if (bytes == 0) return;
  if (auto* const tiles = std::get_if<KeptTiles>(&before_)) {
    if (tiles->empty() && bytes > mostTileBytes(picture_.bitmap())) {
      PictureState whole = picture_.state_;
      pixels();
      before_ = std::move(whole);
    } else {
      // Unshare the picture first, so that a rollback later needs no memory.
      const ConstPixels picture = pixels();
      for (const Rectangle& area : areas) tiles->keep(picture, area);
    }
  }
  for (const Rectangle& area : areas) touched_ = united(touched_, area);
}

void Painting::keepWhole() {
  PictureState whole = picture_.state_;
  std::get<KeptTiles>(before_).exchangeWith(whole.bitmap.writable());
  before_ = std::move(whole);
}

void Painting::commit(const std::string& undoName) {
  if (ended()) return;
  if (touched_.Width > 0) {
    if (const auto* const tiles = std::get_if<KeptTiles>(&before_);
        tiles && tiles->memory() > mostTileBytes(picture_.bitmap())) {
      keepWhole();
    }
    if (isStep(undoName)) {
      picture_.history_.record(undoName, before_);
    } else {
      picture_.history_.absorb(before_);
    }
  }
  picture_.open_ = nullptr;
  if (touched_.Width > 0) picture_.changed({touched_});
}

}  // namespace kestrel::engine
