#include "frmMaterials.h"

#include <utility>

#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/modImgX.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr std::int32_t kForeground = 0;
constexpr std::int32_t kBackground = 1;
/// Index while code sets the picker: its changes are not the user's.
constexpr std::int16_t kPreparing = -1;

/// The width of a swatch, in fifths of the window's width.
constexpr double kSwatchFifths = 2.7;
/// The offset of the second swatch, as a fraction of the first one's width; they overlap.
constexpr double kSecondSwatch = 2.0 / 3.0;

}  // namespace

frmMaterials::frmMaterials()
    : iForm("frmMaterials"),
      ioeTracking(modProcessing::Platform().CreateMouseTracker()),
      btnColors{&Bind<CommandButton>(*iForm, "btnColors", kForeground),
                &Bind<CommandButton>(*iForm, "btnColors", kBackground)},
      cpkMaterials(Bind<ColorPicker>(*iForm, "cpkMaterials")),
      btnPixel(Bind<CommandButton>(*iForm, "btnPixel")),
      lblData{&Bind<Label>(*iForm, "lblData", 0), &Bind<Label>(*iForm, "lblData", 1),
              &Bind<Label>(*iForm, "lblData", 2)} {
  const auto keep = [this](Connection connection) { iControls.push_back(std::move(connection)); };
  keep(iForm->Load.Connect([this] { Form_Load(); }));
  keep(iForm->Resize.Connect([this] { Form_Resize(); }));
  keep(iForm->Unloaded.Connect([this] { Form_Unload(); }));
  for (std::int32_t index : {kForeground, kBackground}) {
    keep(btnColors[index]->Click.Connect([this, index] { btnColors_Click(index); }));
  }
  keep(cpkMaterials.Change.Connect([this](OLE_COLOR color) { cpkMaterials_Change(color); }));
  keep(cpkMaterials.EnhancedButtonClicked.Connect([this] { cpkMaterials_EnhancedButtonClicked(); }));
  keep(ioeTracking->MouseHover.Connect([this] { ioeTracking_MouseHover(); }));
  keep(ioeTracking->MouseLeave.Connect([this] { ioeTracking_MouseLeave(); }));
}

frmMaterials::~frmMaterials() { QDK_RESUME_NEXT(iForm->Unload()); }

void frmMaterials::Form_Load() {
  try {
    QDK_RESUME_NEXT(modProcessing::FormSkin().ApplyToForm(*iForm, -1, -1));
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmMaterials::Form_Unload() {
  QDK_RESUME_NEXT(iEditor.clear());
  QDK_RESUME_NEXT(ioeTracking->StopTracking());
  QDK_RESUME_NEXT(ioeTracking->hWnd(0));
  ImageControl = nullptr;
  Processing = nullptr;
}

void frmMaterials::Form_Resize() {
  std::int32_t Width = 0;
  try {
    Width = ToInt32(iForm->ScaleWidth() / 5.0 * kSwatchFifths);
    btnColors[kForeground]->Width(Width);
    btnColors[kBackground]->Width(Width);
    btnColors[kBackground]->Left(btnColors[kForeground]->Left() + ToInt32(Width * kSecondSwatch));
  } catch (...) {
    QDK_TRAILER(Form_Resize, QDK_PARAMETERS(), QDK_LOCALS(Width));
  }
}

void frmMaterials::Application(IImageProcessingCtl* Value) {
  try {
    iEditor.clear();
    ioeTracking->StopTracking();
    ioeTracking_MouseLeave();

    pApplication = Value;
    Processing = Value;
    ImageControl = Value == nullptr ? nullptr : &Value->ImageControl();
    if (Value == nullptr) return ioeTracking->hWnd(0);

    using Int = std::int32_t;
    const auto keep = [this](Connection connection) { iEditor.push_back(std::move(connection)); };
    keep(Processing->ForeColorChange.Connect([this](OLE_COLOR color) { Processing_ForeColorChange(color); }));
    keep(Processing->BackColorChange.Connect([this](OLE_COLOR color) { Processing_BackColorChange(color); }));
    keep(ImageControl->MouseMove.Connect(
        [this](Int button, Int shift, float x, float y) { ImageControl_MouseMove(button, shift, x, y); }));
    keep(ImageControl->MouseMovePixel.Connect(
        [this](Int button, Int shift, Int x, Int y) { ImageControl_MouseMovePixel(button, shift, x, y); }));
    for (Event<>* event :
         {&ImageControl->Changed, &ImageControl->Loaded, &ImageControl->PointerPixelChanged}) {
      keep(event->Connect([this] { ImageControl_Changed(); }));
    }
    ioeTracking->hWnd(ImageControl->hWnd());
    Processing_ForeColorChange(Processing->ForeColor());
    Processing_BackColorChange(Processing->BackColor());
  } catch (...) {
    QDK_TRAILER(Application, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

// -- The two materials ------------------------------------------------------------------------------------

void frmMaterials::btnColors_Click(std::int32_t Index) {
  OLE_COLOR Color = 0;
  try {
    iIndex = kPreparing;
    const CommandButton& swatch = *btnColors[Index];
    cpkMaterials.Move(swatch.Left(), swatch.Top(), swatch.Width(), swatch.Height());
    Color = Index == kForeground ? Required(pApplication).ForeColor() : Required(pApplication).BackColor();
    // Only the background can be "no color".
    cpkMaterials.EnhancedVisible(Index == kBackground);
    if (Color != kNoColor) {
      cpkMaterials.Value(Color);
      cpkMaterials.EnhancedIsSelected(false);
    } else {
      cpkMaterials.EnhancedIsSelected(true);
    }
    iIndex = static_cast<std::int16_t>(Index);
    cpkMaterials.DropDown();
  } catch (...) {
    QDK_TRAILER(btnColors_Click, QDK_PARAMETERS(Index), QDK_LOCALS(Color));
  }
}

void frmMaterials::cpkMaterials_Change(OLE_COLOR NewColor) {
  try {
    if (iIndex == kForeground) Required(pApplication).ForeColor(NewColor);
    if (iIndex == kBackground) Required(pApplication).BackColor(NewColor);
  } catch (...) {
    QDK_TRAILER(cpkMaterials_Change, QDK_PARAMETERS(NewColor), QDK_LOCALS());
  }
}

void frmMaterials::cpkMaterials_EnhancedButtonClicked() {
  try {
    if (iIndex == kBackground) Required(pApplication).BackColor(kNoColor);
  } catch (...) {
    QDK_TRAILER(cpkMaterials_EnhancedButtonClicked, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmMaterials::Processing_ForeColorChange(OLE_COLOR Color) {
  try {
    btnColors[kForeground]->BackColor(Color);
  } catch (...) {
    QDK_TRAILER(Processing_ForeColorChange, QDK_PARAMETERS(Color), QDK_LOCALS());
  }
}

void frmMaterials::Processing_BackColorChange(OLE_COLOR Color) {
  try {
    btnColors[kBackground]->BackColor(Color != kNoColor ? Color : iForm->BackColor());
  } catch (...) {
    QDK_TRAILER(Processing_BackColorChange, QDK_PARAMETERS(Color), QDK_LOCALS());
  }
}

// -- The color under the pointer -------------------------------------------------------------------------

void frmMaterials::ImageControl_MouseMove(std::int32_t Button, std::int32_t Shift, float X, float Y) {
  try {
    if (!ioeTracking->Tracking()) ioeTracking->StartTracking();
    if (!modImgX::InImageRegion(Required(ImageControl), ToInt32(static_cast<double>(X)),
                                ToInt32(static_cast<double>(Y)))) {
      ioeTracking_MouseLeave();
    }
  } catch (...) {
    QDK_TRAILER(ImageControl_MouseMove, QDK_PARAMETERS(Button, Shift, X, Y), QDK_LOCALS());
  }
}

void frmMaterials::ImageControl_MouseMovePixel(std::int32_t Button, std::int32_t Shift, std::int32_t PixelX,
                                               std::int32_t PixelY) {
  Colour Color;
  try {
    Color = Required(Required(ImageControl).Image()).GetPixel(PixelX, PixelY);
    btnPixel.BackColor(Color.Value());
    lblData[0]->Caption(ToText(std::int32_t{Color.Red()}));
    lblData[1]->Caption(ToText(std::int32_t{Color.Green()}));
    lblData[2]->Caption(ToText(std::int32_t{Color.Blue()}));
  } catch (...) {
    QDK_TRAILER(ImageControl_MouseMovePixel, QDK_PARAMETERS(Button, Shift, PixelX, PixelY),
                QDK_LOCALS(Color));
  }
}

/// The pixel under an unmoved pointer may be another one.
void frmMaterials::ImageControl_Changed() {
  try {
    if (const auto pixel = Required(ImageControl).PointerPixel()) {
      ImageControl_MouseMovePixel(0, 0, pixel->X, pixel->Y);
    } else {
      ioeTracking_MouseLeave();
    }
  } catch (...) {
    QDK_TRAILER(ImageControl_Changed, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmMaterials::ioeTracking_MouseLeave() {
  try {
    for (Label* label : lblData) label->Caption("");
    btnPixel.BackColor(iForm->BackColor());
  } catch (...) {
    QDK_TRAILER(ioeTracking_MouseLeave, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmMaterials::ioeTracking_MouseHover() {
  try {
    ioeTracking->StartTracking();
  } catch (...) {
    QDK_TRAILER(ioeTracking_MouseHover, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

std::string frmMaterials::qdkDumpModuleVariables() const {
  return QDK_FIELDS(pApplication, Processing, ImageControl, ioeTracking, iIndex);
}

}  // namespace kestrel
