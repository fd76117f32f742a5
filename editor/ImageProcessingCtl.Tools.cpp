#include "ImageProcessingCtl.h"
#include "Tools.h"
#include "base/Arithmetic.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/modImgX.h"

namespace kestrel {
namespace {

constexpr std::int32_t kFirstOwnTool = 100;

/// The row of a tool. Other numbers are passed to the view, except those of the editor, from 100.
ToolRow RowOf(ImageProcessingToolConstants tool) {
  for (const ToolRow& row : kTools) {
    if (row.Tool == tool) return row;
  }
  return {tool, "", tool >= kFirstOwnTool ? kViewToolNone : std::int32_t{tool}, kPointerDefault, false, 0};
}

std::string Pair(std::int32_t first, std::int32_t second) { return ToText(first) + ", " + ToText(second); }

}  // namespace

void ImageProcessingCtl::zConnectPointer() {
  const auto keep = [this](Connection connection) { iConnections.push_back(std::move(connection)); };
  using Int = std::int32_t;

  keep(
      igxImage.MouseDown.Connect([this](Int b, Int s, float x, float y) { igxImage_MouseDown(b, s, x, y); }));
  keep(
      igxImage.MouseMove.Connect([this](Int b, Int s, float x, float y) { igxImage_MouseMove(b, s, x, y); }));
  keep(igxImage.MouseMovePixel.Connect(
      [this](Int b, Int s, Int x, Int y) { igxImage_MouseMovePixel(b, s, x, y); }));
  keep(igxImage.PointerPixelChanged.Connect([this] { igxImage_PointerPixelChanged(); }));
  keep(igxImage.ContextMenu.Connect([this] { igxImage_ContextMenu(); }));
  keep(igxImage.MouseUp.Connect([this](Int b, Int s, float x, float y) { igxImage_MouseUp(b, s, x, y); }));
  keep(igxImage.Click.Connect([this] { igxImage_Click(); }));
  keep(igxImage.SelectChanged.Connect(
      [this](Int l, Int t, Int w, Int h) { igxImage_SelectChanged(l, t, w, h); }));
  keep(igxImage.Selected.Connect([this](Int l, Int t, Int w, Int h) { igxImage_Selected(l, t, w, h); }));
  keep(igxImage.DoubleBufferPaintAfter.Connect(
      [this](DeviceContext& hDC) { igxImage_DoubleBufferPaintAfter(hDC); }));
}

void ImageProcessingCtl::Tool(ImageProcessingToolConstants Value) {
  try {
    if (Value == pTool) return;
    pTool = Value;
    CommandBars()("Zoom").Visible(Value == ipToolZoom);
    for (const ToolRow& row : kToolButtons) {
      mrgUI.DockFunctions().SetChecked(Commands()(row.Command), row.Tool == Value);
    }
    igxImage.Tool(RowOf(Value).ViewTool);
    igxImage.MousePointer(RowOf(Value).Pointer);
    ResetSelection();
    zRaise(ToolChange, Value);
  } catch (...) {
    QDK_TRAILER(Tool, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

Point ImageProcessingCtl::zPixelAt(float X, float Y) {
  return {CheckedAdd(ToInt32(static_cast<double>(X)), igxImage.ScrollLeft() - 1),
          CheckedAdd(ToInt32(static_cast<double>(Y)), igxImage.ScrollTop() - 1)};
}

bool ImageProcessingCtl::zInImageRegion(float X, float Y) {
  return modImgX::InImageRegion(igxImage, ToInt32(static_cast<double>(X)), ToInt32(static_cast<double>(Y)));
}

bool ImageProcessingCtl::zOutsideSelection(const Point& Pixel) const {
  const std::int64_t left = igxImage.SelectionLeft();
  const std::int64_t top = igxImage.SelectionTop();
  return Pixel.X > left + igxImage.SelectionWidth() || Pixel.Y > top + igxImage.SelectionHeight() ||
         Pixel.Y < top || Pixel.X < left;
}

void ImageProcessingCtl::igxImage_MouseDown(std::int32_t Button, std::int32_t Shift, float X, float Y) {
  Point Pixel;
  try {
    if (igxImage.Image() == nullptr) return;
    Pixel = zPixelAt(X, Y);
    if (iPasting && zOutsideSelection(Pixel)) Paste();
  } catch (...) {
    QDK_TRAILER(igxImage_MouseDown, QDK_PARAMETERS(Button, Shift, X, Y), QDK_LOCALS(Pixel));
  }
}

void ImageProcessingCtl::igxImage_MouseMove(std::int32_t Button, std::int32_t Shift, float X, float Y) {
  try {
    if (zInImageRegion(X, Y)) return;
    mrgUI.StatusPanel("pnlPosition").Caption(" ");
    if (fltZoom) fltZoom->ClearZoomWindow();
  } catch (...) {
    QDK_TRAILER(igxImage_MouseMove, QDK_PARAMETERS(Button, Shift, X, Y), QDK_LOCALS());
  }
}

void ImageProcessingCtl::igxImage_MouseMovePixel(std::int32_t Button, std::int32_t Shift, std::int32_t PixelX,
                                                 std::int32_t PixelY) {
  try {
    mrgUI.StatusPanel("pnlPosition").Caption(Pair(PixelX, PixelY));
    if (fltZoom) fltZoom->RedrawZoomWindowEx(PixelX, PixelY);
  } catch (...) {
    QDK_TRAILER(igxImage_MouseMovePixel, QDK_PARAMETERS(Button, Shift, PixelX, PixelY), QDK_LOCALS());
  }
}

void ImageProcessingCtl::igxImage_MouseUp(std::int32_t Button, std::int32_t Shift, float X, float Y) {
  Point Pixel;
  OLE_COLOR Color = 0;
  try {
    iLastButton = static_cast<std::int16_t>(Button);
    Pixel = zPixelAt(X, Y);
    if (!zInImageRegion(X, Y)) return;
    if (pTool == ipToolDropper) {
      Color = Required(igxImage.Image()).GetPixel(Pixel.X, Pixel.Y).Value();
      if (Button == kRightButton) {
        BackColor(Color);
      } else {
        ForeColor(Color);
      }
    }
    if (Button == kRightButton) {
      const bool inSelection = modImgX::InImageSelection(igxImage, ToInt32(static_cast<double>(X)),
                                                         ToInt32(static_cast<double>(Y)), false);
      zShowPopup(inSelection ? "mnuSelectionContext" : "mnuImageContext");
    }
  } catch (...) {
    QDK_TRAILER(igxImage_MouseUp, QDK_PARAMETERS(Button, Shift, X, Y), QDK_LOCALS(Pixel, Color));
  }
}

void ImageProcessingCtl::igxImage_Click() {
  try {
    if (!igxImage.SelectionVisible()) {
      ResetSelection();
      // The view hides the rectangle on a click outside of it. The editor counts the far edge as inside, and
      // also all of the floating image, which does not scale with the zoom.
      if (iPasting) {
        zKeepFloatingSize();
        igxImage.SelectionVisible(true);
        zShowSize();
      }
    }
    if (pTool != ipToolZoom || iLastButton != kLeftButton) return;
    if (iPlatform.FormUtility().IsModifierDown()) {
      ZoomOut();
    } else {
      ZoomIn();
    }
  } catch (...) {
    QDK_TRAILER(igxImage_Click, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// Shows the size of the selection if there is one, else of the picture.
void ImageProcessingCtl::zShowSize() {
  const kestrel::Image* picture = igxImage.Image();
  std::string size = " ";
  if (picture != nullptr) size = Pair(picture->Width(), picture->Height());
  if (picture != nullptr && zHasSelection())
    size = Pair(igxImage.SelectionWidth(), igxImage.SelectionHeight());
  mrgUI.StatusPanel("pnlSize").Caption(size);
}

/// The pixel under an unmoved pointer may be another one.
void ImageProcessingCtl::zUpdatePointerPixel() {
  if (const auto pixel = igxImage.PointerPixel()) {
    mrgUI.StatusPanel("pnlPosition").Caption(Pair(pixel->X, pixel->Y));
    if (fltZoom) fltZoom->RedrawZoomWindowEx(pixel->X, pixel->Y);
  } else {
    mrgUI.StatusPanel("pnlPosition").Caption(" ");
    if (fltZoom) fltZoom->ClearZoomWindow();
  }
}

void ImageProcessingCtl::igxImage_PointerPixelChanged() {
  try {
    zUpdatePointerPixel();
  } catch (...) {
    QDK_TRAILER(igxImage_PointerPixelChanged, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// The menu of a right click on the selection, or on the picture without one.
void ImageProcessingCtl::igxImage_ContextMenu() {
  try {
    if (igxImage.Image() == nullptr) return;
    zShowPopup(igxImage.SelectionVisible() ? "mnuSelectionContext" : "mnuImageContext");
  } catch (...) {
    QDK_TRAILER(igxImage_ContextMenu, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void ImageProcessingCtl::igxImage_SelectChanged(std::int32_t Left, std::int32_t Top, std::int32_t Width,
                                                std::int32_t Height) {
  try {
    // A canceled drag may leave no selection.
    if (!igxImage.SelectionVisible()) return zShowSize();
    mrgUI.StatusPanel("pnlSize").Caption(Pair(Width, Height));
    // The view repaints the rectangle's border only, not the floating image inside.
    if (iPasting) igxImage.Refresh();
  } catch (...) {
    QDK_TRAILER(igxImage_SelectChanged, QDK_PARAMETERS(Left, Top, Width, Height), QDK_LOCALS());
  }
}

void ImageProcessingCtl::igxImage_Selected(std::int32_t Left, std::int32_t Top, std::int32_t Width,
                                           std::int32_t Height) {
  try {
    zShowSize();
    if (iCropping) {
      zTryCrop();
      zCancelCrop();
    }
    if (iPasting) zMoveFloatingImage();
  } catch (...) {
    QDK_TRAILER(igxImage_Selected, QDK_PARAMETERS(Left, Top, Width, Height), QDK_LOCALS());
  }
}

}  // namespace kestrel
