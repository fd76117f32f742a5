#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>
#include <set>

#include "EditingReplay.h"
#include "EditingTest.h"
#include "ShadowDialog.h"
#include "imaging/contract/controls/CheckBox.h"
#include "imaging/contract/controls/ColorPicker.h"
#include "imaging/contract/controls/ComboBox.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/FormHeader.h"
#include "imaging/contract/controls/OptionButton.h"
#include "imaging/contract/controls/TextBox.h"
#include "imaging/modImgX.h"

namespace kestrel {
namespace {

constexpr int kActions = 10'000;
/// A picture beyond these limits is resized to its first size.
constexpr std::int32_t kSmallest = 20, kLargest = 100;
/// A pointer position nearer than this to an edge of the selection may grab a handle.
constexpr std::int32_t kClear = 7;

struct RecordedRequest {
  EditRequest request;
  std::uint64_t picture;
};

std::uint64_t fingerprint(const engine::Bitmap& bitmap) {
  std::uint64_t hash = 14695981039346656037u;
  const auto mix = [&hash](std::uint64_t value) { hash = (hash ^ value) * 1099511628211u; };
  mix(static_cast<std::uint64_t>(bitmap.width()));
  for (std::int32_t y = 0; y < bitmap.height(); ++y) {
    const std::uint8_t* const row = bitmap.pixels().row(y);
    for (std::int32_t i = 0; i < 4 * bitmap.width(); ++i) mix(row[i]);
  }
  return hash;
}

/// Random actions of a user and a host.
class RandomEditing : public EditingTest {
 protected:
  std::int32_t upTo(std::int32_t most) {
    return std::uniform_int_distribution<std::int32_t>(0, most)(random_);
  }
  std::int32_t between(std::int32_t low, std::int32_t high) { return low + upTo(high - low); }
  bool once(std::int32_t in) { return upTo(in - 1) == 0; }
  OLE_COLOR color() { return upTo(0xFFFFFF); }
  /// Offset of a shadow. -1 is avoided, since it means the option.
  std::int32_t offset() {
    const std::int32_t result = between(-4, 4);
    return result == -1 ? 0 : result;
  }
  std::int32_t width() { return view().Image()->Width(); }
  std::int32_t height() { return view().Image()->Height(); }
  /// The color of some pixel.
  OLE_COLOR pixelColor() {
    const Point there = pixel();
    return colorOf(at(there.X, there.Y));
  }
  Point pixel() { return {upTo(width() - 1), upTo(height() - 1)}; }
  bool hasSelection() { return modImgX::ValidSelection(&view()); }

  Rectangle selection() {
    Rectangle r{view().SelectionLeft(), view().SelectionTop(), view().SelectionWidth(),
                view().SelectionHeight()};
    if (r.Width < 0) r.Left += r.Width, r.Width = -r.Width;
    if (r.Height < 0) r.Top += r.Height, r.Height = -r.Height;
    return r;
  }
  bool inPicture(const Rectangle& r) {
    return r.Left < width() && r.Top < height() && r.Left + r.Width > 0 && r.Top + r.Height > 0;
  }
  bool cornerInPicture() {
    return view().SelectionLeft() >= 0 && view().SelectionTop() >= 0 && view().SelectionLeft() < width() &&
           view().SelectionTop() < height();
  }
  /// Whether a press at this pixel grabs no handle of the selection.
  bool isClear(Point at) {
    if (editor().Tool() != ipToolSelect || !hasSelection()) return true;
    const Rectangle r = selection();
    const auto near = [](std::int32_t value, std::int32_t edge) { return std::abs(value - edge) < kClear; };
    const bool outsideX = at.X < r.Left - kClear || at.X > r.Left + r.Width + kClear;
    const bool outsideY = at.Y < r.Top - kClear || at.Y > r.Top + r.Height + kClear;
    if (outsideX || outsideY) return true;
    return !near(at.X, r.Left) && !near(at.X, r.Left + r.Width) && !near(at.Y, r.Top) &&
           !near(at.Y, r.Top + r.Height);
  }

  EditRequest anything();
  /// A random request whose command is enabled.
  EditRequest next();
  EditRequest drag();
  EditRequest click();
  EditRequest select();
  /// Sets what the user does in the dialog of a request that opens one.
  void planDialog(const EditRequest& request);
  void perform(const EditRequest& request);
  void zoomInAndReset();
  void exportAndCompare();
  void makeThumbnailByDialog(std::int32_t percentage);
  void drag(Point from, Point to);
  /// The view has asked to be painted wherever its display has changed.
  void expectScreenUpToDate(const char* when);

  std::mt19937 random_;
};

/// Sets what the user does in the dialog of the request, if it is one of shadows, flattening or Paste
/// Special.
void planColorDialog(headless::User& user, const EditRequest& request) {
  const auto with = request.arguments;
  switch (request.action) {
    case Action::kShadowDialog:
    case Action::kMaskedShadowDialog:
      return user.uses("frmDropShadow", [with](Form& form) {
        ShadowDialog dialog(form);
        dialog.horizontal().Text(ToText(with[0]));
        dialog.vertical().Text(ToText(with[1]));
        dialog.shadow().pick(with[2]);
        dialog.opacity().Text(ToText(with[3]));
        dialog.blur().Text(ToText(with[4]));
        with[5] == -1 ? dialog.mask().pressEnhanced() : dialog.mask().pick(with[5]);
        dialog.ok();
      });
    case Action::kFlattenDialog:
    case Action::kBeginPasteSpecial: {
      const bool flattens = request.action == Action::kFlattenDialog;
      return user.uses(flattens ? "frmFlattenAlpha" : "frmPasteSpecial", [with, flattens](Form& form) {
        ColorDialog dialog(form);
        dialog.color().pick(flattens ? with[0] : with[2]);
        dialog.ok();
      });
    }
    default:
      return;
  }
}

EditRequest RandomEditing::drag() {
  for (;;) {
    const Point from = pixel(), to = pixel();
    if (std::abs(to.X - from.X) < 3 || std::abs(to.Y - from.Y) < 3 || !isClear(from)) {
      if (once(200)) return {Action::kSelectNone, {}};
      continue;
    }
    Rectangle moved = selection();
    moved.Left += to.X - from.X;
    moved.Top += to.Y - from.Y;
    if (hasSelection() && !inPicture(moved)) return {Action::kSelectNone, {}};
    return {Action::kDrag, {from.X, from.Y, to.X, to.Y}};
  }
}

EditRequest RandomEditing::click() {
  const Point at = pixel();
  const std::int32_t button = once(4) ? kRightButton : kLeftButton;
  if (!isClear(at) || editor().Tool() == ipToolZoom) return {Action::kSelectNone, {}};
  return {Action::kClick, {at.X, at.Y, button}};
}

EditRequest RandomEditing::select() {
  const Point from = pixel();
  const std::int32_t right = between(1, width() - from.X), down = between(1, height() - from.Y);
  if (once(5)) return {Action::kSelect, {from.X, from.Y, -std::max(1, from.X), -std::max(1, from.Y)}};
  return {Action::kSelect, {from.X, from.Y, right, down}};
}

EditRequest RandomEditing::anything() {
  if (std::min(width(), height()) < kSmallest || std::max(width(), height()) > kLargest) {
    return {Action::kResizeCanvas, {kWidth, kHeight, upTo(4), upTo(4), color()}};
  }
  if (hasSelection() && !inPicture(selection())) return {Action::kSelectNone, {}};
  const std::int32_t toSelection = upTo(1);
  switch (upTo(41)) {
    case 0:
    case 1:
    case 2: {
      const std::int32_t tools[] = {ipToolSelect,    ipToolPan,     ipToolZoom,     ipToolLine,
                                    ipToolRectangle, ipToolEllipse, ipToolFreehand, ipToolDropper};
      return {Action::kTool, {tools[upTo(7)]}};
    }
    case 3:
    case 4:
    case 5:
    case 6:
    case 7:
    case 8:
    case 9:
    case 10:
      return drag();
    case 11:
    case 12:
      return click();
    case 13:
      return {Action::kMirror, {}};
    case 14:
      return {Action::kFlip, {}};
    case 15:
      return {once(3) ? Action::kGrayScale : Action::kCopy, {}};
    case 16:
      return {Action::kRotateRight, {}};
    case 17:
      return {Action::kRotateLeft, {}};
    case 18:
      if (once(10)) return {Action::kRotateDialog, {between(1, 359), upTo(1)}};
      return {Action::kSelectAll, {}};
    case 19:
    case 20:
      return {Action::kCrop, {}};
    case 21:
      return {Action::kCut, {}};
    case 22:
    case 23:
      if (!platform().Clipboard().hasBitmap()) return {Action::kCopy, {}};
      if (once(3)) {
        return {Action::kBeginPasteSpecial, {view().ScrollLeft(), view().ScrollTop(), pixelColor()}};
      }
      return {Action::kBeginPaste, {view().ScrollLeft(), view().ScrollTop()}};
    case 24:
      return {Action::kCommitPaste, {}};
    case 25:
      return {Action::kEscape, {}};
    case 26:
    case 27:
      return select();
    case 28:
    case 29:
    case 30:
    case 31:
      return {Action::kUndo, {}};
    case 32:
    case 33:
      return {Action::kRedo, {}};
    case 34:
      return {Action::kUndoLevels, {once(10) ? 0 : between(1, 8)}};
    case 35:
      if (once(4)) return {Action::kExport, {}};
      return {Action::kForeColor, {color()}};
    case 36:
      return {Action::kBackColor, {once(3) ? -1 : color()}};
    case 37:
      if (once(2)) return {Action::kThumbnail, {between(10, 100), !hasSelection() && once(2) ? 1 : 0}};
      if (once(3)) return {Action::kResizeDialog, {between(60, 140), between(60, 140), 1, upTo(4)}};
      if (once(3)) return {Action::kResizeDialog, {between(20, 60), between(20, 60), 0, upTo(4)}};
      if (once(2)) return {Action::kCanvasDialog, {between(20, 90), between(20, 90), upTo(8), color()}};
      return {Action::kResize, {between(20, 60), once(2) ? 0 : between(20, 60), once(2) ? 13 : upTo(3)}};
    case 38:
      return {Action::kRotate, {upTo(360), once(2) ? 0xFFFFFF : color(), toSelection}};
    case 39:
      return {once(2) ? Action::kFlatten : Action::kFlattenDialog, {color()}};
    case 40:
      if (once(4)) {
        return {Action::kShadowDialog, {between(-4, 4), between(-4, 4), color(), upTo(255), upTo(20)}};
      }
      if (once(2)) {
        return {Action::kShadow, {offset(), offset(), color(), upTo(255), upTo(20), toSelection}};
      }
      if (hasSelection() && !cornerInPicture()) return {Action::kSelectNone, {}};
      if (once(2)) {
        return {Action::kMaskedShadowDialog,
                {between(-4, 4), between(-4, 4), color(), upTo(255), upTo(20), once(2) ? -1 : pixelColor()}};
      }
      return {Action::kMaskedShadow, {between(0, 4), between(0, 4), color(), upTo(255), upTo(20), upTo(1)}};
    default:
      return {Action::kZoomInAndReset, {}};
  }
}

void RandomEditing::zoomInAndReset() {
  EditorTest::click("btnZoomIn");
  EditorTest::click("btnZoomActualSize");
}

/// The command that the user clicks; null for requests without a command.
const char* commandOf(const EditRequest& request) {
  switch (request.action) {
    case Action::kTool: {
      const char* const keys[] = {"btnDrawSelect",    "btnDrawPan",     "btnDrawZoom",     "btnDrawLine",
                                  "btnDrawRectangle", "btnDrawEllipse", "btnDrawFreehand", "btnDrawPicker"};
      const std::int32_t tools[] = {1, 2, 5, 7, 9, 10, 11, 100};
      return keys[std::find(std::begin(tools), std::end(tools), request.arguments[0]) - std::begin(tools)];
    }
    case Action::kMirror:
      return "btnImageMirror";
    case Action::kFlip:
      return "btnImageFlip";
    case Action::kGrayScale:
      return "btnImageGrayScale";
    case Action::kRotateRight:
      return "btnRotateRight";
    case Action::kRotateLeft:
      return "btnRotateLeft";
    case Action::kRotateDialog:
      return "btnRotateFree";
    case Action::kResizeDialog:
      return "btnImageResize";
    case Action::kCanvasDialog:
      return "btnImageResizeCanvas";
    case Action::kCrop:
      return "btnImageCrop";
    case Action::kCopy:
      return "btnEditCopy";
    case Action::kCut:
      return "btnEditCut";
    case Action::kBeginPaste:
      return "btnEditPaste";
    case Action::kBeginPasteSpecial:
      return "btnEditPasteSpecial";
    case Action::kShadowDialog:
      return "btnImageDropShadow";
    case Action::kMaskedShadowDialog:
      return "btnImageShapedDropShadow";
    case Action::kFlattenDialog:
      return "btnToolsFlattenAlpha";
    case Action::kExport:
      return "btnFileExport";
    case Action::kSelectAll:
      return "btnSelectionAll";
    case Action::kSelectNone:
      return "btnSelectionNone";
    case Action::kUndo:
      return "btnEditUndo";
    case Action::kRedo:
      return "btnEditRedo";
    default:
      return nullptr;
  }
}

EditRequest RandomEditing::next() {
  for (;;) {
    const EditRequest request = anything();
    const char* const key = commandOf(request);
    if (key == nullptr || command(key).Enabled()) return request;
    // A disabled command may need the end of the current mode.
    const bool inMode = pressed("btnEditPaste") || pressed("btnImageCrop");
    if (inMode && (request.action == Action::kSelectNone || once(3))) return {Action::kEscape, {}};
    if (inMode && once(3)) return {Action::kCommitPaste, {}};
  }
}

void RandomEditing::planDialog(const EditRequest& request) {
  const auto with = request.arguments;
  const auto ok = [](Form& form) { Bind<CommandButton>(form, "cmdAction", 0).Press(); };
  const auto enterSize = [with](Form& form) {
    Bind<CheckBox>(form, "chkAspect").Value(0);
    Bind<TextBox>(form, "txtField", 0).Text(ToText(with[0]));
    Bind<TextBox>(form, "txtField", 1).Text(ToText(with[1]));
  };
  switch (request.action) {
    case Action::kRotateDialog:
      return user().uses("frmRotate", [=](Form& form) {
        Bind<TextBox>(form, "txtDegrees").Text(ToText(with[0]));
        Bind<OptionButton>(form, "optDirection", with[1] != 0 ? 0 : 1).Value(true);
        ok(form);
      });
    case Action::kResizeDialog:
      return user().uses("frmResize", [=](Form& form) {
        enterSize(form);
        Bind<ComboBox>(form, "cboScale").ListIndex(with[2]);
        Bind<ComboBox>(form, "cboResample").ListIndex(with[3]);
        ok(form);
      });
    case Action::kCanvasDialog:
      return user().uses("frmResizeCanvas", [=](Form& form) {
        enterSize(form);
        Bind<CommandButton>(form, "btnPlacement", with[2]).Press();
        Bind<ColorPicker>(form, "cpkColor").Value(with[3]);
        ok(form);
      });
    default:
      return;
  }
}

void RandomEditing::perform(const EditRequest& request) {
  const auto& with = request.arguments;
  planDialog(request);
  planColorDialog(user(), request);
  if (request.action == Action::kExport) return exportAndCompare();
  if (const char* const key = commandOf(request)) return EditorTest::click(key);
  switch (request.action) {
    case Action::kDrag:
      return drag(position(with[0], with[1]), position(with[2], with[3]));
    case Action::kClick:
      if (with[2] == kRightButton) user().picks("");
      return view().click(position(with[0], with[1]), with[2]);
    case Action::kCommitPaste:
      return editor().Paste();
    case Action::kEscape:
      return site().pressKey(27, 0, 27);
    case Action::kSelect:
      return editor().SetSelection(with[0], with[1], with[2], with[3]);
    case Action::kUndoLevels:
      return editor().UndoLevels(with[0]);
    case Action::kForeColor:
      return editor().ForeColor(with[0]);
    case Action::kBackColor:
      return editor().BackColor(with[0]);
    case Action::kResize:
      return editor().Resize(with[0], with[1], with[2]);
    case Action::kResizeCanvas:
      return editor().ResizeCanvas(with[0], with[1], with[2], with[3], with[4]);
    case Action::kRotate:
      return editor().Rotate(static_cast<float>(with[0]), with[1], with[2] != 0);
    case Action::kFlatten:
      return editor().FlattenAlpha(with[0]);
    case Action::kShadow:
      return editor().ApplyDropShadow(with[0], with[1], with[2], with[3], with[4], with[5] != 0);
    case Action::kMaskedShadow:
      return editor().ApplyMaskedDropShadow(with[0], with[1], with[2], with[3], with[4], 0xFFFFFF,
                                            with[5] != 0);
    case Action::kThumbnail:
      if (with[1] != 0) return makeThumbnailByDialog(with[0]);
      EXPECT_NE(editor().GetThumbnail(with[0], 0xFFFFFF), nullptr);
      return;
    case Action::kZoomInAndReset:
      return zoomInAndReset();
    default:
      return;
  }
}

/// Exports as PNG data, which the entry JPG writes, and expects the picture in the file.
void RandomEditing::exportAndCompare() {
  const std::string file = path("exported.png");
  user().uses("frmExport", [&file](Form& form) {
    Bind<TextBox>(form, "txtField").Text(file);
    Bind<ComboBox>(form, "cboFormat").ListIndex(1);
    Bind<CommandButton>(form, "cmdAction", 0).Press();
    Bind<CommandButton>(form, "cmdAction", 1).Press();
  });
  EditorTest::click("btnFileExport");
  const auto written = platform().CreateImgX();
  written->Document().FromFile(file);
  EXPECT_TRUE(same(engine::bitmapOf(*written->Image()), shown()));
}

void RandomEditing::makeThumbnailByDialog(std::int32_t percentage) {
  user().uses("frmGetThumnail", [percentage](Form& form) {
    Bind<CheckBox>(form, "chkAddDropShadow").Value(0);
    Bind<TextBox>(form, "txtField", 0).Text(ToText(percentage));
    Bind<FormHeader>(form, "FormHeader").PressOK();
  });
  EXPECT_NE(editor().ShowGetThumnailDialog(), nullptr);
}

void RandomEditing::drag(Point from, Point to) {
  constexpr std::int32_t kSteps = 4;
  view().press(kLeftButton, 0, from);
  expectScreenUpToDate("after the press");
  for (std::int32_t step = 1; step <= kSteps; ++step) {
    view().move(kLeftButton, 0,
                {from.X + (to.X - from.X) * step / kSteps, from.Y + (to.Y - from.Y) * step / kSteps});
    expectScreenUpToDate("while dragging");
  }
  view().release(kLeftButton, 0, to);
  expectScreenUpToDate("after the release");
}

void RandomEditing::expectScreenUpToDate(const char* when) {
  if (HasFailure()) return;
  const engine::Bitmap& screen = view().screen();
  const engine::Bitmap whole = view().painted();
  const auto bytes = 4 * static_cast<std::size_t>(whole.width());
  for (std::int32_t y = 0; y < whole.height(); ++y) {
    ASSERT_EQ(std::memcmp(screen.pixels().row(y), whole.pixels().row(y), bytes), 0)
        << "row " << y << " " << when;
  }
}

TEST_P(RandomEditing, TenThousandActionsEndWithThePictureOfAnIndependentReplay) {
  options().MaterialBackColor(-1);
  editor().UndoLevels(5);
  const EditingReplay::Start start{shown(),
                                   editor().ForeColor(),
                                   editor().BackColor(),
                                   view().Draw().Color().Value(),
                                   view().Draw().FillMode(),
                                   5,
                                   -1,
                                   {view().Width(), view().Height()}};
  std::vector<RecordedRequest> requests;
  random_.seed(20'061'129);
  for (int i = 0; i < kActions && !HasFailure(); ++i) {
    requests.push_back({next(), 0});
    perform(requests.back().request);
    requests.back().picture = fingerprint(shown());
    expectScreenUpToDate("after the action");
    if (HasFailure()) FAIL() << "number " << i << ", " << requests.back().request.text();
    log().clear();
  }
  const engine::Bitmap ended = shown();
  std::set<std::uint64_t> pictures;
  for (const RecordedRequest& one : requests) pictures.insert(one.picture);
  EXPECT_GT(pictures.size(), kActions / 5u) << "the requests must change the picture often";

  EditingReplay replay(platform(), start);
  for (std::size_t i = 0; i < requests.size(); ++i) {
    replay.carryOut(requests[i].request);
    ASSERT_EQ(fingerprint(replay.picture()), requests[i].picture)
        << "after number " << i << ", " << requests[i].request.text();
  }
  EXPECT_TRUE(same(replay.picture(), ended));
  EXPECT_EQ(requests.size(), static_cast<std::size_t>(kActions));
}

INSTANTIATE_TEST_SUITE_P(Paths, RandomEditing, testing::Values(PathStyle::kSlash), nameOfPathStyle);

}  // namespace
}  // namespace kestrel
