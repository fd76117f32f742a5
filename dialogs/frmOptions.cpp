#include "frmOptions.h"

#include <memory>

#include "base/Arithmetic.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/Canvas.h"
#include "settings/StoreTogether.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

// Indices of `optSizeType` and `txtField`.
constexpr std::size_t kPercentage = 0;
constexpr std::size_t kWidth = 1;

// Indices of `lblValue`.
constexpr std::size_t kZoom = 0;
constexpr std::size_t kQuality = 1;

/// The slider shows compression, the setting is quality.
constexpr std::int32_t kFullCompression = 100;

/// The entry of `cboGridSize` for a stored size; "Medium" for a size that is not in the list.
std::int32_t GridSizeIndex(std::int32_t size) {
  switch (size) {
    case 4:
      return 0;
    case 8:
      return 1;
    case 32:
      return 3;
    default:
      return 2;
  }
}

std::size_t IndexOf(ThumbnailSizeTypeEnum type) { return type == tstPercentage ? kPercentage : kWidth; }

}  // namespace

frmOptions::frmOptions()
    : DialogBase("frmOptions"),
      tabView(Bind<TabStrip>(Form(), "tabView")),
      cboGridSize(Bind<ComboBox>(Form(), "cboGridSize")),
      cpkGrid{&Bind<ColorPicker>(Form(), "cpkGrid", 0), &Bind<ColorPicker>(Form(), "cpkGrid", 1)},
      fraGrid(Bind<Frame>(Form(), "fraGrid")),
      sldZoom(Bind<Slider>(Form(), "sldZoom")),
      lblValue{&Bind<Label>(Form(), "lblValue", 0), &Bind<Label>(Form(), "lblValue", 1)},
      chkAddThumbnails(Bind<CheckBox>(Form(), "chkAddThumbnails")),
      optSizeType{&Bind<OptionButton>(Form(), "optSizeType", 0),
                  &Bind<OptionButton>(Form(), "optSizeType", 1)},
      txtField{&Bind<TextBox>(Form(), "txtField", 0), &Bind<TextBox>(Form(), "txtField", 1)},
      chkDropShadow(Bind<CheckBox>(Form(), "chkDropShadow")),
      chkAutomaticUpdate(Bind<CheckBox>(Form(), "chkAutomaticUpdate")),
      cpkColor{&Bind<ColorPicker>(Form(), "cpkColor", 0)},
      sldJPEGQuality(Bind<Slider>(Form(), "sldJPEGQuality")) {
  Keep(tabView.Click.Connect([this] { tabView_Click(); }));
  Keep(cboGridSize.Click.Connect([this] { cboGridSize_Click(); }));
  for (ColorPicker* picker : cpkGrid) {
    const std::int32_t index = picker->Index();
    Keep(picker->Change.Connect([this, index](OLE_COLOR color) { cpkGrid_Change(index, color); }));
  }
  Keep(sldZoom.Change.Connect([this] { sldZoom_Change(); }));
  Keep(sldJPEGQuality.Change.Connect([this] { sldJPEGQuality_Change(); }));
  for (TextBox* box : txtField) {
    const std::int32_t index = box->Index();
    Keep(box->Change.Connect([this, index] { txtField_Change(index); }));
    Keep(box->GotFocus.Connect([this, index] { txtField_GotFocus(index); }));
  }
}

void frmOptions::Form_Load() {
  std::size_t Type = 0;
  try {
    Form().ClearIcon();
    for (TextBox* box : txtField) MakeNumberBox(*box);
    const auto shared = modProcessing::GetOptions();
    Options& Options = Required(shared);
    cboGridSize.ListIndex(GridSizeIndex(Options.BackgroundGridSize()));
    chkAddThumbnails.Value(Options.ThumbnailAutoCheck() ? 1 : 0);
    cpkGrid[0]->Value(Options.BackgroundGridColor1());
    cpkGrid[1]->Value(Options.BackgroundGridColor2());
    Type = IndexOf(Options.ThumbnailSizeType());
    optSizeType.at(Type)->Value(true);
    txtField.at(Type)->Text(ToText(Options.ThumbnailSize()));
    cpkColor[0]->Value(Options.ThumbnailBackgroundColor());
    chkAutomaticUpdate.Value(Options.ThumbnailAutomaticUpdate() ? 1 : 0);
    sldZoom.Value(Options.ZoomLevel());
    chkDropShadow.Value(Options.ThumbnailAddDropShadow() ? 1 : 0);
    sldJPEGQuality.Value(CheckedAdd(kFullCompression, CheckedNegate(Options.JPEGQuality())));
    // A slider that is at its number already raises no change.
    zShowNumbers();
    tabView_Click();
    ApplyLook();
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS(Type));
  }
}

void frmOptions::UpdatePreview() {
  std::unique_ptr<kestrel::Canvas> Canvas;
  std::int32_t Y = 0, X = 0, Size = 0;
  try {
    Size = cboGridSize.ItemData(cboGridSize.ListIndex());
    kestrel::Platform& platform = modProcessing::Platform();
    const double width = fraGrid.Width(), height = fraGrid.Height();
    Canvas = platform.CreateCanvas(ToInt32(width / platform.Screen().TwipsPerPixelX()),
                                   ToInt32(height / platform.Screen().TwipsPerPixelY()));
    Canvas->FillRectangle({0, 0, Canvas->Width(), Canvas->Height()}, cpkGrid[0]->Value());
    for (Y = 0; Y <= Canvas->Height(); Y += 2 * Size) {
      for (X = 0; X <= Canvas->Width(); X += 2 * Size) {
        Canvas->FillRectangle({X, Y, Size, Size}, cpkGrid[1]->Value());
        Canvas->FillRectangle({X + Size, Y + Size, Size, Size}, cpkGrid[1]->Value());
      }
    }
    fraGrid.BackgroundPicture(Canvas->Picture());
  } catch (...) {
    QDK_TRAILER(UpdatePreview, QDK_PARAMETERS(), QDK_LOCALS(Canvas, Y, X, Size));
  }
}

std::int32_t frmOptions::zQuality() const { return kFullCompression - sldJPEGQuality.Value(); }

void frmOptions::zShowNumbers() {
  lblValue[kZoom]->Caption(ToText(sldZoom.Value()));
  lblValue[kQuality]->Caption(ToText(zQuality()));
}

void frmOptions::sldZoom_Change() {
  try {
    zShowNumbers();
  } catch (...) {
    QDK_TRAILER(sldZoom_Change, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmOptions::sldJPEGQuality_Change() {
  try {
    zShowNumbers();
  } catch (...) {
    QDK_TRAILER(sldJPEGQuality_Change, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmOptions::tabView_Click() {
  std::int32_t i = 0;
  try {
    for (i = 0; i <= Form().UBound("fraView"); ++i) {
      Bind<Frame>(Form(), "fraView", i).Visible(i == tabView.SelectedIndex() - 1);
    }
  } catch (...) {
    QDK_TRAILER(tabView_Click, QDK_PARAMETERS(), QDK_LOCALS(i));
  }
}

void frmOptions::cboGridSize_Click() {
  try {
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(cboGridSize_Click, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmOptions::cpkGrid_Change(std::int32_t Index, OLE_COLOR NewColor) {
  try {
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(cpkGrid_Change, QDK_PARAMETERS(Index, NewColor), QDK_LOCALS());
  }
}

void frmOptions::txtField_Change(std::int32_t Index) {
  try {
    optSizeType.at(static_cast<std::size_t>(Index))->Value(true);
  } catch (...) {
    QDK_TRAILER(txtField_Change, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmOptions::txtField_GotFocus(std::int32_t Index) {
  try {
    modProcessing::FormUtility().SelectAllText(*txtField.at(static_cast<std::size_t>(Index)));
  } catch (...) {
    QDK_TRAILER(txtField_GotFocus, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmOptions::cmdAction_Click(std::int32_t Index) {
  bool Percentage = false;
  try {
    if (Index == kActionCancel) return Unload();
    const auto shared = modProcessing::GetOptions();
    Options& Options = Required(shared);
    StoreTogether([&] {
      Options.BackgroundGridSize(cboGridSize.ItemData(cboGridSize.ListIndex()));
      Options.BackgroundGridColor1(cpkGrid[0]->Value());
      Options.BackgroundGridColor2(cpkGrid[1]->Value());
      Options.ThumbnailAutomaticUpdate(chkAutomaticUpdate.Value() == 1);
      Options.ThumbnailBackgroundColor(cpkColor[0]->Value());
      Percentage = optSizeType[kPercentage]->Value();
      Options.ThumbnailSizeType(Percentage ? tstPercentage : tstWidthInPixels);
      Options.ThumbnailSize(ToInt32(Val(txtField.at(Percentage ? kPercentage : kWidth)->Text())));
      Options.ThumbnailAddDropShadow(chkDropShadow.Value() == 1);
      Options.ThumbnailAutoCheck(chkAddThumbnails.Value() == 1);
      Options.ZoomLevel(sldZoom.Value());
      Options.JPEGQuality(zQuality());
    });
    Success = true;
    Unload();
  } catch (...) {
    QDK_TRAILER(cmdAction_Click, QDK_PARAMETERS(Index), QDK_LOCALS(Percentage));
  }
}

std::string frmOptions::qdkDumpModuleVariables() const {
  return QDK_FIELDS(Success, SafeToUnload, ResultData);
}

}  // namespace kestrel
