#include "frmDropShadow.h"

#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "settings/StoreTogether.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

// Indices of `txtField`.
constexpr std::size_t kHorizontal = 0;
constexpr std::size_t kVertical = 1;
constexpr std::size_t kBlur = 2;
constexpr std::size_t kOpacity = 3;

// Indices of `cpkColor`.
constexpr std::size_t kShadow = 0;
constexpr std::size_t kMask = 1;

/// Index of the mask's label in `lblHdr`.
constexpr std::int32_t kMaskLabel = 5;

/// Pixels that rounding has moved by one level from the mask color count as mask, too.
constexpr double kMaskTolerance = 1.0;

}  // namespace

frmDropShadow::frmDropShadow()
    : PreviewDialog("frmDropShadow"),
      txtField{&Bind<TextBox>(Form(), "txtField", 0), &Bind<TextBox>(Form(), "txtField", 1),
               &Bind<TextBox>(Form(), "txtField", 2), &Bind<TextBox>(Form(), "txtField", 3)},
      cpkColor{&Bind<ColorPicker>(Form(), "cpkColor", 0), &Bind<ColorPicker>(Form(), "cpkColor", 1)},
      lblMask(Bind<Label>(Form(), "lblHdr", kMaskLabel)) {
  for (TextBox* box : txtField) {
    const std::int32_t index = box->Index();
    Keep(box->Change.Connect([this, index] { txtField_Change(index); }));
    Keep(box->GotFocus.Connect([this, index] { txtField_GotFocus(index); }));
  }
  for (ColorPicker* picker : cpkColor) {
    const std::int32_t index = picker->Index();
    Keep(picker->Change.Connect([this, index](OLE_COLOR color) { cpkColor_Change(index, color); }));
    Keep(picker->EnhancedButtonClicked.Connect([this, index] { cpkColor_EnhancedButtonClicked(index); }));
  }
}

void frmDropShadow::Form_Load() {
  try {
    Form().ClearIcon();
    for (TextBox* box : txtField) MakeNumberBox(*box);
    if (AllowMaskSelection) {
      Form().Caption("Contoured Drop Shadow");
    } else {
      lblMask.Visible(false);
      cpkColor[kMask]->Visible(false);
    }
    const auto shared = modProcessing::GetOptions();
    Options& Options = Required(shared);
    txtField[kHorizontal]->Text(ToText(Options.DropShadowHorizontalOffset()));
    txtField[kVertical]->Text(ToText(Options.DropShadowVerticalOffset()));
    txtField[kBlur]->Text(ToText(Options.DropShadowBlur()));
    txtField[kOpacity]->Text(ToText(Options.DropShadowOpacity()));
    cpkColor[kShadow]->Value(Options.DropShadowColor());
    cpkColor[kMask]->Value(Options.DropShadowMaskColor());
    cpkColor[kMask]->EnhancedIsSelected(Options.DropShadowAutomaticMask());
    ApplyLook();
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmDropShadow::UpdatePreview() {
  OLE_COLOR mask = 0;
  Colour from, to, shadow;
  double horizontal = 0, vertical = 0, opacity = 0, blur = 0;
  try {
    if (!IsWindowVisible()) return;
    ShowEffect([&](ImageView& image) {
      if (AllowMaskSelection) {
        mask = cpkColor[kMask]->EnhancedIsSelected() ? Required(image.Image()).GetPixel(0, 0).Value()
                                                     : cpkColor[kMask]->Value();
        from = image.Colors().Create(mask, 255);
        to = image.Colors().Create(0, 0);
        image.Effects().ReplaceColor(from, to, kMaskTolerance, 0);
      }
      horizontal = Val(txtField[kHorizontal]->Text());
      vertical = Val(txtField[kVertical]->Text());
      opacity = Val(txtField[kOpacity]->Text());
      blur = Val(txtField[kBlur]->Text());
      shadow = image.Colors().Create(cpkColor[kShadow]->Value(), ToByte(opacity));
      image.Effects().DropShadow(ToInt32(horizontal), ToInt32(vertical), shadow, blur, true);
    });
  } catch (...) {
    QDK_TRAILER(UpdatePreview, QDK_PARAMETERS(),
                QDK_LOCALS(mask, from, to, shadow, horizontal, vertical, opacity, blur));
  }
}

void frmDropShadow::txtField_Change(std::int32_t Index) {
  try {
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(txtField_Change, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmDropShadow::txtField_GotFocus(std::int32_t Index) {
  try {
    modProcessing::FormUtility().SelectAllText(*txtField.at(static_cast<std::size_t>(Index)));
  } catch (...) {
    QDK_TRAILER(txtField_GotFocus, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmDropShadow::cpkColor_Change(std::int32_t Index, OLE_COLOR NewColor) {
  try {
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(cpkColor_Change, QDK_PARAMETERS(Index, NewColor), QDK_LOCALS());
  }
}

void frmDropShadow::cpkColor_EnhancedButtonClicked(std::int32_t Index) {
  try {
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(cpkColor_EnhancedButtonClicked, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmDropShadow::cmdAction_Click(std::int32_t Index) {
  try {
    if (Index == kActionCancel) return Unload();
    const auto shared = modProcessing::GetOptions();
    Options& Options = Required(shared);
    StoreTogether([&] {
      Options.DropShadowBlur(ToInt32(Val(txtField[kBlur]->Text())));
      Options.DropShadowColor(cpkColor[kShadow]->Value());
      Options.DropShadowHorizontalOffset(ToInt32(Val(txtField[kHorizontal]->Text())));
      Options.DropShadowVerticalOffset(ToInt32(Val(txtField[kVertical]->Text())));
      Options.DropShadowOpacity(ToInt32(Val(txtField[kOpacity]->Text())));
      if (AllowMaskSelection) {
        if (cpkColor[kMask]->EnhancedIsSelected()) {
          // The color is kept for the next choice of a color.
          Options.DropShadowAutomaticMask(true);
        } else {
          Options.DropShadowMaskColor(cpkColor[kMask]->Value());
          Options.DropShadowAutomaticMask(false);
        }
      }
    });
    Success = true;
    Unload();
  } catch (...) {
    QDK_TRAILER(cmdAction_Click, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

std::string frmDropShadow::qdkDumpModuleVariables() const {
  return QDK_FIELDS(Success, SafeToUnload, AllowMaskSelection, ResultData);
}

}  // namespace kestrel
