#include "frmZoom.h"

#include <utility>

#include "base/Arithmetic.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/modImgX.h"
#include "settings/modProcessing.h"

namespace kestrel {

frmZoom::frmZoom() : iForm("frmZoom"), ioeTracking(modProcessing::Platform().CreateMouseTracker()) {
  const auto keep = [this](Connection connection) { iConnections.push_back(std::move(connection)); };
  keep(iForm->Load.Connect([this] { Form_Load(); }));
  keep(iForm->Unloaded.Connect([this] { Form_Unload(); }));
  keep(ioeTracking->MouseHover.Connect([this] { ioeTracking_MouseHover(); }));
  keep(ioeTracking->MouseLeave.Connect([this] { ioeTracking_MouseLeave(); }));
  pZoomLevel = Required(modProcessing::GetOptions()).ZoomLevel();
  // The editor reports invalid grid colors or sizes.
  QDK_RESUME_NEXT(ApplyOptions());
}

frmZoom::~frmZoom() { QDK_RESUME_NEXT(iForm->Unload()); }

void frmZoom::Form_Load() {
  try {
    QDK_RESUME_NEXT(modProcessing::FormSkin().ApplyToForm(*iForm, -1, -1));
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmZoom::Form_Unload() {
  QDK_RESUME_NEXT(ioeTracking->StopTracking());
  QDK_RESUME_NEXT(ioeTracking->hWnd(0));
  pApplication = nullptr;
}

void frmZoom::ApplyOptions() {
  const auto shared = modProcessing::GetOptions();
  const Options& options = Required(shared);
  const auto created = modProcessing::Platform().CreateImgX();
  ImgX& tile = Required(created);
  modImgX::DrawBackgroundTile(tile, options.BackgroundGridSize(), options.BackgroundGridColor1(),
                              options.BackgroundGridColor2());
  iForm->Graphics().Ground(tile.Writer().ToPicture());
}

void frmZoom::ClearZoomWindow() {
  try {
    iForm->Graphics().Clear();
  } catch (...) {
    QDK_TRAILER(ClearZoomWindow, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmZoom::RedrawZoomWindowEx(const std::int32_t& X, const std::int32_t& Y) {
  std::int32_t PixelX = 0, PixelY = 0, RegionWidth = 0, RegionHeight = 0;
  std::int32_t Left = 0, Top = 0, Width = 0, Height = 0;
  try {
    if (!modProcessing::WindowFunctions().IsWindowVisible(iForm->hWnd())) return;
    PixelX = X;
    PixelY = Y;
    if (!ioeTracking->Tracking()) ioeTracking->StartTracking();
    if (pZoomLevel == 0) throw RuntimeError(err::kDivisionByZero, "Division by zero");
    RegionWidth = iForm->ScaleWidth() / pZoomLevel;
    RegionHeight = iForm->ScaleHeight() / pZoomLevel;
    Left = CheckedAdd(PixelX, -(RegionWidth / 2));
    Top = CheckedAdd(PixelY, -(RegionHeight / 2));
    // One picture pixel more than the source region: the scale is slightly larger than the zoom level.
    Width = ToInt32((RegionWidth + 1.0) * pZoomLevel);
    Height = ToInt32((RegionHeight + 1.0) * pZoomLevel);
    const PicturePtr picture = Required(pApplication).ImageControl().Picture();
    Graphics& graphics = iForm->Graphics();
    graphics.PaintPicture(Required(picture), {0, 0, Width, Height}, {Left, Top, RegionWidth, RegionHeight});

    // An inverted mark is visible on any picture.
    graphics.DrawMode(kDrawInvert);
    const std::int32_t middleX = RegionWidth / 2 * pZoomLevel;
    const std::int32_t middleY = RegionHeight / 2 * pZoomLevel;
    Left = ToInt32(middleX - pZoomLevel / 2.0);
    Top = ToInt32(middleY - pZoomLevel / 2.0);
    graphics.DrawBox(Left, Top, CheckedAdd(Left, pZoomLevel), CheckedAdd(Top, pZoomLevel), 0);
    graphics.DrawMode(kDrawCopy);
    graphics.Refresh();
  } catch (...) {
    QDK_TRAILER(RedrawZoomWindowEx, QDK_PARAMETERS(X, Y),
                QDK_LOCALS(PixelX, PixelY, RegionWidth, RegionHeight, Left, Top, Width, Height));
  }
}

void frmZoom::RedrawZoomWindow() {
  Point Position;
  try {
    if (!modProcessing::WindowFunctions().IsWindowVisible(iForm->hWnd())) return;
    WindowFunctions& windows = modProcessing::WindowFunctions();
    Position = windows.ScreenToClient(Required(pApplication).ImageControl().hWnd(), windows.GetCursorPos());
    RedrawZoomWindowEx(Position.X, Position.Y);
  } catch (...) {
    QDK_TRAILER(RedrawZoomWindow, QDK_PARAMETERS(), QDK_LOCALS(Position));
  }
}

void frmZoom::ZoomLevel(std::int32_t Value) {
  try {
    if (Value == pZoomLevel) return;
    pZoomLevel = Value;
    RedrawZoomWindow();
  } catch (...) {
    QDK_TRAILER(ZoomLevel, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void frmZoom::Application(IImageProcessingCtl* Value) {
  try {
    ioeTracking->StopTracking();
    ClearZoomWindow();
    pApplication = Value;
    ioeTracking->hWnd(Value == nullptr ? 0 : Value->ImageControl().hWnd());
    if (Value != nullptr) RedrawZoomWindow();
  } catch (...) {
    QDK_TRAILER(Application, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

void frmZoom::ioeTracking_MouseHover() {
  try {
    ioeTracking->StartTracking();
  } catch (...) {
    QDK_TRAILER(ioeTracking_MouseHover, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmZoom::ioeTracking_MouseLeave() {
  try {
    ClearZoomWindow();
  } catch (...) {
    QDK_TRAILER(ioeTracking_MouseLeave, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

std::string frmZoom::qdkDumpModuleVariables() const {
  return QDK_FIELDS(pApplication, pZoomLevel, ioeTracking);
}

}  // namespace kestrel
