#include "View.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "engine/effects/Flatten.h"
#include "engine/imgx/ImgXObject.h"
#include "engine/imgx/PictureObject.h"

namespace kestrel::engine {
namespace {

constexpr Pixel kBehindTransparency{255, 255, 255, 255};
constexpr std::int32_t kStartUndoLevels = 3;
constexpr std::int32_t kBorderThickness = 1;

/// Tile used without a background image; wide, because the painter composites one run of a tile at a time.
Bitmap plainTile() { return Bitmap::filled(256, 1, kBehindTransparency); }

class PictureUndoPoint final : public UndoPoint {
 public:
  PictureUndoPoint(std::shared_ptr<EditablePicture> picture, EditablePicture::UndoPoint point)
      : picture_(std::move(picture)), point_(std::move(point)) {}

  void TakeBack() override {
    if (point_) picture_->takeBack(*std::exchange(point_, std::nullopt));
  }

 private:
  std::shared_ptr<EditablePicture> picture_;
  std::optional<EditablePicture::UndoPoint> point_;
};

}  // namespace

View::View(ClipboardPort& clipboard)
    : Face(clipboard, std::make_shared<ImagingSettings>()),
      clipboard_(clipboard),
      picture_(std::make_shared<EditablePicture>()),
      background_(plainTile()) {
  picture_->undoLevels(kStartUndoLevels);
  picture_->onChange = [this](const PictureChange& change) { pictureChanged(change); };
  picture_->onRollBack = [this](const Rectangle& area) {
    keepPlace();
    pictureDrawn(area);
  };
  picture_->onStepsChange = [this] { UndoStepsChanged(); };
  picture_->onModifiedChange = [this] { ModifiedChanged(); };
}

// ImgX objects and undo points may outlive the view: detach the callbacks.
View::~View() {
  picture_->onChange = nullptr;
  picture_->onRollBack = nullptr;
  picture_->onStepsChange = nullptr;
  picture_->onModifiedChange = nullptr;
  gesture_.reset();
}

std::shared_ptr<kestrel::ImgX> View::ImgX() {
  if (!imgX_ || !imgX_->isBound()) imgX_ = std::make_shared<ImgXObject>(clipboard_, picture_, settings_);
  return imgX_;
}

PicturePtr View::Picture() {
  return picture_->empty() ? nullptr : std::make_shared<PictureObject>(picture_->bitmap());
}

void View::Picture(const PicturePtr& value) {
  if (value) {
    Document().FromPicture(*value, kNoUndo);
  } else if (!picture_->empty()) {
    putPicture({}, kNoUndo);
  }
}

void View::putPicture(PictureState state, const std::string& undoName) {
  cancelGesture();
  picture_->put(std::move(state), undoName);
}

void View::pictureChanged(const PictureChange& change) {
  const Bitmap& bitmap = picture_->bitmap();
  const bool whole = change.area.Width == bitmap.width() && change.area.Height == bitmap.height();
  if (whole) {
    const bool resized = bitmap.width() != horizontal_.picture() || bitmap.height() != vertical_.picture();
    const ScrollPlace place = picture_->state().place;
    painter_.reset();
    measure();
    if (change.otherPicture) {
      moveTo(0, 0);
    } else if (resized) {
      // Undo and redo bring back the position that belongs to the picture.
      moveTo(place.left * horizontal_.zoom(), place.top * vertical_.zoom());
    }
    invalidateAll();
    keepPlace();
    reportPointerPixel();
  } else {
    pictureDrawn(change.area);
  }
  (change.loaded ? Loaded : Changed)();
}

/// Keeps the scroll position with the picture, for the undo step of the next change.
void View::keepPlace() {
  picture_->place({horizontal_.offset() / horizontal_.zoom(), vertical_.offset() / vertical_.zoom()});
}

void View::pictureDrawn(const Rectangle& area) {
  painter_.invalidate(area);
  const Rectangle shown = inView(area);
  // The box kernel extends into neighboring view pixels, by at most one; rounding adds another.
  invalidateView({shown.Left - 2, shown.Top - 2, shown.Width + 4, shown.Height + 4});
}

void View::Undo() {
  cancelGesture();
  picture_->undo();
}

void View::Redo() {
  cancelGesture();
  picture_->redo();
}

std::unique_ptr<UndoPoint> View::CreateUndoPoint(const std::string& name) {
  cancelGesture();
  return std::make_unique<PictureUndoPoint>(picture_, picture_->createUndoPoint(name));
}

void View::DoubleBuffer(bool value) {
  if (value == doubleBuffer_) return;
  doubleBuffer_ = value;
  invalidateAll();
}

void View::BackgroundImage(const kestrel::Image* value) {
  background_ = value == nullptr ? plainTile() : flatten(bitmapOf(*value), kBehindTransparency);
  invalidateAll();
}

void View::ImageBorder(bool value) {
  imageBorder_ = value;
  measure();
  invalidateAll();
}

void View::resize(std::int32_t width, std::int32_t height) {
  const std::int32_t border = imageBorder_ ? kBorderThickness : 0;
  horizontal_.measure(picture_->bitmap().width(), std::max(width, 0), border);
  vertical_.measure(picture_->bitmap().height(), std::max(height, 0), border);
  keepPlace();
  scrollRangesChanged();
  invalidateAll();
  reportPointerPixel();
}

void View::measure() { resize(horizontal_.view(), vertical_.view()); }

void View::SelectionStyle(std::int32_t value) {
  if (value != 0) {
    throw RuntimeError(err::kInvalidPropertyValue, "The marching rectangle, 0, is the only selection style.");
  }
}

void View::Notice(const std::string& text, const std::string& action) {
  if (text == notice_ && action == noticeAction_) return;
  notice_ = text;
  noticeAction_ = action;
  showNotice(notice_, noticeAction_);
}

void View::EmptyHint(const std::string& text) {
  if (text == emptyHint_) return;
  emptyHint_ = text;
  if (picture_->empty()) invalidateAll();
}

void View::Tool(std::int32_t value) {
  if (value == tool_) return;
  cancelGesture();
  invalidateSelection();
  tool_ = value;
  updateCursor();
}

void View::MousePointer(std::int32_t value) {
  mousePointer_ = value;
  updateCursor();
}

}  // namespace kestrel::engine
