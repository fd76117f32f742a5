#include "EditingReplay.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <utility>

#include "engine/draw/BoxShape.h"
#include "engine/draw/LineShape.h"
#include "engine/draw/Stroke.h"
#include "engine/imgx/PictureObject.h"

namespace kestrel {
namespace {

using engine::Bitmap;
using engine::PointD;

engine::Pixel pixelOf(OLE_COLOR color) {
  const Colour colour(color);
  return {colour.Red(), colour.Green(), colour.Blue(), 255};
}

Rectangle boundsOf(const Bitmap& bitmap) { return {0, 0, bitmap.width(), bitmap.height()}; }

PointD middle(Point pixel) { return {pixel.X + 0.5, pixel.Y + 0.5}; }

Rectangle upright(Rectangle rectangle) {
  if (rectangle.Width < 0) rectangle.Left += std::exchange(rectangle.Width, -rectangle.Width);
  if (rectangle.Height < 0) rectangle.Top += std::exchange(rectangle.Height, -rectangle.Height);
  return rectangle;
}

bool within(const Rectangle& rectangle, Point at) {
  return at.X >= rectangle.Left && at.X < rectangle.Left + rectangle.Width && at.Y >= rectangle.Top &&
         at.Y < rectangle.Top + rectangle.Height;
}

bool overlaps(const Bitmap& below, const Bitmap& above, Point at) {
  return at.X < below.width() && at.Y < below.height() && at.X + above.width() > 0 &&
         at.Y + above.height() > 0;
}

}  // namespace

// -- Pictures and steps -----------------------------------------------------------------------------------

std::shared_ptr<ImgX> EditingReplay::load(const Bitmap& bitmap) {
  auto object = platform_.CreateImgX();
  object->Document().FromPicture(engine::PictureObject(bitmap));
  return object;
}

Bitmap EditingReplay::edited(const Bitmap& bitmap, const Work& work) {
  const auto object = load(bitmap);
  work(*object);
  return engine::bitmapOf(*object->Image());
}

void EditingReplay::remember() {
  undone_.clear();
  done_.push_back(now_.picture);
  while (done_.size() > static_cast<std::size_t>(now_.undoLevels)) done_.pop_front();
}

void EditingReplay::step(Bitmap next) {
  remember();
  now_.picture = std::move(next);
}

void EditingReplay::undo(std::deque<Bitmap>& from, std::deque<Bitmap>& to) {
  if (from.empty()) return;
  to.push_back(std::exchange(now_.picture, from.back()));
  from.pop_back();
}

void EditingReplay::levels(std::int32_t value) {
  now_.undoLevels = value;
  for (auto* steps : {&done_, &undone_}) {
    while (steps->size() > static_cast<std::size_t>(value)) steps->pop_front();
  }
}

Bitmap EditingReplay::section() {
  const Rectangle area = upright(selection_);
  return edited(now_.picture,
                [&](ImgX& object) { object.Effects().Crop(area.Left, area.Top, area.Width, area.Height); });
}

void EditingReplay::drawBack(bool asStep) {
  const Rectangle area = upright(selection_);
  const Point corner{std::max(area.Left, 0), std::max(area.Top, 0)};
  visible_ = false;
  if (!overlaps(now_.picture, scratch_, corner)) return;
  if (asStep) remember();
  const auto top = load(scratch_);
  now_.picture = edited(
      now_.picture, [&](ImgX& object) { object.Draw().ImageWithAlpha(*top->Image(), corner.X, corner.Y); });
}

void EditingReplay::operate(bool onSelection, const Work& work) {
  if (!onSelection || !hasSelection()) return step(edited(now_.picture, work));
  scratch_ = edited(section(), work);
  drawBack(true);
}

void EditingReplay::shadow(const EditRequest& request, bool onSelection) {
  const auto& with = request.arguments;
  operate(onSelection, [&](ImgX& object) {
    object.Effects().DropShadow(with[0], with[1], Colour(with[2], static_cast<std::uint8_t>(with[3])),
                                with[4], true);
  });
}

void EditingReplay::maskedShadow(const EditRequest& request, OLE_COLOR mask) {
  const auto& with = request.arguments;
  const bool onSelection = hasSelection();
  remember();
  const Point corner = onSelection ? Point{selection_.Left, selection_.Top} : Point{};
  const engine::Pixel found = now_.picture.at(corner.X, corner.Y);
  if (mask == -1) mask = found.b << 16 | found.g << 8 | found.r;
  const Work work = [&](ImgX& object) {
    object.Effects().ReplaceColor(Colour(mask), Colour(0, 0), 1.0);
    object.Effects().DropShadow(with[0], with[1], Colour(with[2], static_cast<std::uint8_t>(with[3])),
                                with[4], true);
  };
  if (onSelection) {
    scratch_ = edited(section(), work);
    drawBack(false);
  } else {
    now_.picture = edited(now_.picture, work);
  }
}

// -- State ------------------------------------------------------------------------------------------------

void EditingReplay::resetSelection() {
  selection_.Width = selection_.Height = 0;
  visible_ = false;
}

void EditingReplay::tool(std::int32_t value) {
  if (std::exchange(tool_, value) != value) resetSelection();
}

void EditingReplay::foreColor(OLE_COLOR value) {
  if (std::exchange(now_.foreColor, value) != value && now_.backColor == -1) now_.drawColor = value;
}

void EditingReplay::backColor(OLE_COLOR value) {
  if (std::exchange(now_.backColor, value) == value) return;
  now_.drawColor = value == -1 ? now_.foreColor : value;
  now_.fillMode = value == -1 ? -1 : 6;
}

bool EditingReplay::selects() const { return tool_ == 1; }

// -- The pointer ------------------------------------------------------------------------------------------

void EditingReplay::press(Point at) {
  if (!pasting_) return;
  const Rectangle& s = selection_;
  if (at.X > s.Left + s.Width || at.Y > s.Top + s.Height || at.Y < s.Top || at.X < s.Left) commitPaste();
}

void EditingReplay::drag(Point from, Point to) {
  press(from);
  constexpr std::int32_t kSteps = 4;
  std::vector<Point> way;
  for (std::int32_t i = 1; i <= kSteps; ++i) {
    const Point at{from.X + (to.X - from.X) * i / kSteps, from.Y + (to.Y - from.Y) * i / kSteps};
    // Movement of up to two pixels is no drag.
    const bool strayed = std::abs(at.X - from.X) > 2 || std::abs(at.Y - from.Y) > 2;
    if (strayed || !way.empty()) way.push_back(at);
  }
  switch (tool_) {
    case 1:
      return dragSelection(hasSelection() && within(upright(selection_), from), from, to);
    case 7:
    case 9:
    case 10:
      return drawShape(from, to);
    case 11:
      return drawStroke(from, way);
    case 100:
      return pick(to, kLeftButton);
    default:
      return;
  }
}

void EditingReplay::dragSelection(bool inside, Point from, Point to) {
  if (inside) {
    selection_.Left += to.X - from.X;
    selection_.Top += to.Y - from.Y;
  } else {
    selection_ = {from.X, from.Y, to.X - from.X, to.Y - from.Y};
  }
  visible_ = true;
  if (std::exchange(cropping_, false)) {
    cropToSelection();
    resetSelection();
  }
  if (!pasting_) return;
  selection_.Width = scratch_.width();
  selection_.Height = scratch_.height();
  pasteAt_ = {selection_.Left, selection_.Top};
}

void EditingReplay::drawShape(Point from, Point to) {
  const auto pen = now_.fillMode == -1 ? std::optional(1) : std::nullopt;
  std::unique_ptr<engine::Shape> shape;
  if (tool_ == 7) {
    shape = std::make_unique<engine::LineShape>(middle(from), middle(to), 1);
  } else if (tool_ == 9) {
    shape = std::make_unique<engine::BoxShape>(engine::BoxShape::rectangle(from, to, pen));
  } else {
    shape = std::make_unique<engine::BoxShape>(engine::BoxShape::ellipse(from, to, pen));
  }
  const Rectangle whole = boundsOf(now_.picture);
  if (engine::touchedBy(*shape, whole).empty()) return;
  Bitmap next = now_.picture;
  engine::paint(next.writable(), whole, *shape, pixelOf(now_.drawColor));
  step(std::move(next));
}

void EditingReplay::drawStroke(Point from, const std::vector<Point>& way) {
  Bitmap next = now_.picture;
  engine::Stroke stroke(pixelOf(now_.drawColor), 1, boundsOf(next));
  bool touched = !stroke.add(middle(from)).empty();
  for (const Point at : way) touched |= !stroke.add(middle(at)).empty();
  touched |= !stroke.finish().empty();
  if (!touched) return;
  stroke.paint(next.writable());
  step(std::move(next));
}

void EditingReplay::pick(Point at, std::int32_t button) {
  const engine::Pixel pixel = now_.picture.at(at.X, at.Y);
  const OLE_COLOR color = pixel.b << 16 | pixel.g << 8 | pixel.r;
  button == kRightButton ? backColor(color) : foreColor(color);
}

void EditingReplay::click(Point at, std::int32_t button) {
  press(at);
  if (button == kLeftButton && selects() && !(hasSelection() && within(upright(selection_), at))) {
    visible_ = false;
  }
  if (button == kLeftButton && tool_ == 11) drawStroke(at, {});
  if (tool_ == 100) pick(at, button);
  if (!visible_) resetSelection();
}

// -- Clipboard, paste and crop ----------------------------------------------------------------------------

void EditingReplay::copy() {
  if (selects() && hasSelection()) {
    clipboard_ = scratch_ = section();
  } else {
    clipboard_ = now_.picture;
  }
}

void EditingReplay::cut() {
  Point start, end{now_.view.Width, now_.view.Height};
  const bool part = selects() && hasSelection();
  copy();
  if (part) {
    start = {selection_.Left, selection_.Top};
    end = {selection_.Left + selection_.Width, selection_.Top + selection_.Height};
    resetSelection();
  }
  now_.fillMode = 6;
  step(edited(now_.picture, [&](ImgX& object) {
    object.Draw().Color().Value(now_.drawColor);
    object.Draw().FillMode(6);
    object.Draw().Rectangle(start, end);
  }));
}

void EditingReplay::beginPaste(Point at, OLE_COLOR mask) {
  scratch_ = clipboard_;
  tool(1);
  pasting_ = true;
  pasteMask_ = mask;
  // A picture smaller than the view is centered, so its scroll position is negative.
  selection_ = {at.X, at.Y, scratch_.width(), scratch_.height()};
  visible_ = true;
}

void EditingReplay::commitPaste() {
  if (!std::exchange(pasting_, false)) return;
  if (overlaps(now_.picture, scratch_, pasteAt_)) {
    const auto top = load(scratch_);
    const Colour mask(pasteMask_);
    step(edited(now_.picture, [&](ImgX& object) {
      object.Draw().Image(*top->Image(), pasteAt_.X, pasteAt_.Y, pasteMask_ == -1 ? nullptr : &mask, 1.0F,
                          true);
    }));
  }
  resetSelection();
}

void EditingReplay::cancelPaste() {
  if (std::exchange(pasting_, false)) resetSelection();
}

void EditingReplay::cropToSelection() { step(section()); }

// -- Dialogs ----------------------------------------------------------------------------------------------

void EditingReplay::resizeByDialog(const EditRequest& request) {
  const auto& with = request.arguments;
  // In hundredths, rounded to the nearest, ties to even.
  const auto pixels = [&](std::int32_t size, std::int32_t entered) {
    if (with[2] == 0) return entered;
    const std::int32_t whole = size * entered / 100, rest = size * entered % 100;
    return whole + (rest > 50 || (rest == 50 && whole % 2 != 0) ? 1 : 0);
  };
  const std::int32_t methods[] = {2, 0, 1, 3, 13};
  const std::int32_t width = pixels(now_.picture.width(), with[0]);
  const std::int32_t height = pixels(now_.picture.height(), with[1]);
  operate(false, [&](ImgX& object) { object.Effects().Resize(width, height, methods[with[3]]); });
}

void EditingReplay::resizeCanvasByDialog(const EditRequest& request) {
  const auto& with = request.arguments;
  // The difference is split by the placement: none, the smaller half or all of it.
  const auto offset = [](std::int32_t difference, std::int32_t halves) {
    return (difference * halves - (difference * halves % 2 != 0 && difference < 0 ? 1 : 0)) / 2;
  };
  const std::int32_t x = offset(with[0] - now_.picture.width(), with[2] % 3);
  const std::int32_t y = offset(with[1] - now_.picture.height(), with[2] / 3);
  operate(false,
          [&](ImgX& object) { object.Effects().ResizeCanvas(with[0], with[1], Colour(with[3]), x, y); });
}

// -- Requests ---------------------------------------------------------------------------------------------

void EditingReplay::carryOut(const EditRequest& request) {
  const auto& with = request.arguments;
  const auto turn = [&](std::int32_t angle, OLE_COLOR color, bool onSelection) {
    const Colour corners(color);
    operate(onSelection, [&](ImgX& object) { object.Effects().Rotate(static_cast<float>(angle), &corners); });
  };
  switch (request.action) {
    case Action::kTool:
      return tool(with[0]);
    case Action::kDrag:
      return drag({with[0], with[1]}, {with[2], with[3]});
    case Action::kClick:
      return click({with[0], with[1]}, with[2]);
    case Action::kMirror:
      return operate(true, [](ImgX& object) { object.Effects().Flip(0); });
    case Action::kFlip:
      return operate(true, [](ImgX& object) { object.Effects().Flip(1); });
    case Action::kGrayScale:
      return operate(true, [](ImgX& object) {
        Palette gray;
        gray.Type(0);
        object.Effects().ApplyPalette(gray, true);
      });
    case Action::kRotateRight:
      return turn(90, now_.rotateColor, true);
    case Action::kRotateLeft:
      return turn(270, now_.rotateColor, true);
    case Action::kRotateDialog:
      return turn(with[1] != 0 ? 360 - with[0] : with[0], now_.rotateColor, true);
    case Action::kCrop:
      if (hasSelection()) {
        cropToSelection();
        return resetSelection();
      }
      tool(1);
      cropping_ = true;
      return;
    case Action::kCopy:
      return copy();
    case Action::kCut:
      return cut();
    case Action::kBeginPaste:
      return beginPaste({with[0], with[1]}, -1);
    case Action::kBeginPasteSpecial:
      return beginPaste({with[0], with[1]}, with[2]);
    case Action::kCommitPaste:
      return commitPaste();
    case Action::kEscape:
      if (std::exchange(cropping_, false)) resetSelection();
      return cancelPaste();
    case Action::kSelectAll:
      tool(1);
      selection_ = boundsOf(now_.picture);
      visible_ = true;
      return;
    case Action::kSelectNone:
      return resetSelection();
    case Action::kSelect:
      tool(1);
      selection_ = {with[0], with[1], with[2], with[3]};
      visible_ = true;
      return;
    case Action::kUndo:
      return undo(done_, undone_);
    case Action::kRedo:
      return undo(undone_, done_);
    case Action::kUndoLevels:
      return levels(with[0]);
    case Action::kForeColor:
      return foreColor(with[0]);
    case Action::kBackColor:
      return backColor(with[0]);
    case Action::kResize:
      return operate(false, [&](ImgX& object) { object.Effects().Resize(with[0], with[1], with[2]); });
    case Action::kResizeCanvas:
      return operate(false, [&](ImgX& object) {
        object.Effects().ResizeCanvas(with[0], with[1], Colour(with[4]), with[2], with[3]);
      });
    case Action::kResizeDialog:
      return resizeByDialog(request);
    case Action::kCanvasDialog:
      return resizeCanvasByDialog(request);
    case Action::kRotate:
      return turn(with[0], with[1], with[2] != 0);
    case Action::kFlatten:
    case Action::kFlattenDialog:
      return operate(false, [&](ImgX& object) { object.Alpha().Flatten(Colour(with[0])); });
    case Action::kShadow:
      return shadow(request, with[5] != 0);
    case Action::kShadowDialog:
      return shadow(request, true);
    case Action::kMaskedShadow:
      return maskedShadow(request, with[5] != 0 ? -1 : 0xFFFFFF);
    case Action::kMaskedShadowDialog:
      return maskedShadow(request, with[5]);
    case Action::kThumbnail: {
      const std::int32_t width = static_cast<std::int32_t>(now_.picture.width() / 100.0 * with[0]);
      scratch_ = edited(now_.picture, [&](ImgX& object) {
        object.Effects().Resize(width, 0, 13);
        object.Alpha().Flatten(Colour(0xFFFFFF));
      });
      return;
    }
    case Action::kExport:
    case Action::kZoomInAndReset:
      return;
  }
}

}  // namespace kestrel
