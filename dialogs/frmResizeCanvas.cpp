#include "frmResizeCanvas.h"

#include "base/Arithmetic.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "settings/StoreTogether.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr std::int32_t kFieldLeft = 2;
constexpr std::int32_t kFieldTop = 3;

/// The placements are a grid of 3 by 3.
constexpr std::int32_t kPlacements = 9;
constexpr std::int32_t kPlacementsPerRow = 3;
constexpr std::int32_t kPlacementCenter = 4;

/// The offset of the old picture along one axis: at the near edge, centered or at the far edge (0 to 2).
std::int32_t OffsetAt(std::int32_t step, std::int32_t size, std::int32_t newSize) {
  const std::int32_t difference = CheckedAdd(newSize, CheckedNegate(size));
  switch (step) {
    case 0:
      return 0;
    case 2:
      return difference;
    default:
      return Floor(difference / 2.0);
  }
}

}  // namespace

frmResizeCanvas::frmResizeCanvas(IImageProcessingCtl& source)
    : SizeDialog("frmResizeCanvas", source), cpkColor(Bind<ColorPicker>(Form(), "cpkColor")) {
  for (std::int32_t index = 0; index < kPlacements; ++index) {
    CommandButton& button = Bind<CommandButton>(Form(), "btnPlacement", index);
    btnPlacement[static_cast<std::size_t>(index)] = &button;
    Keep(button.Click.Connect([this, index] { btnPlacement_Click(index); }));
  }
}

void frmResizeCanvas::Form_Load() {
  try {
    Form().ClearIcon();
    MakeNumberBoxes();
    const auto shared = modProcessing::GetOptions();
    Options& Options = Required(shared);
    chkAspect.Value(Options.ResizeCanvasLockAspectRatio() ? 1 : 0);
    txtField[kFieldWidth]->Text(ToText(Options.ResizeCanvasWidth()));
    txtField[kFieldHeight]->Text(ToText(Options.ResizeCanvasHeight()));
    cpkColor.Value(Options.ResizeCanvasColor());
    // A stored number without a button counts as the center.
    const std::int32_t stored = Options.ResizeCanvasPlacement();
    const bool exists = stored >= 0 && stored < kPlacements;
    btnPlacement[static_cast<std::size_t>(exists ? stored : kPlacementCenter)]->Press();
    ShowOriginalSize();
    ApplyLook();
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmResizeCanvas::btnPlacement_Click(std::int32_t Index) {
  try {
    iPlacement = Index;
    for (CommandButton* const button : btnPlacement) button->Pressed(button->Index() == Index);
    zCalcPosition();
  } catch (...) {
    QDK_TRAILER(btnPlacement_Click, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmResizeCanvas::zCalcPosition() {
  std::int32_t X = 0, Y = 0, NewWidth = 0, NewHeight = 0;
  try {
    NewWidth = ToInt32(Field(kFieldWidth));
    NewHeight = ToInt32(Field(kFieldHeight));
    X = OffsetAt(iPlacement % kPlacementsPerRow, ImageWidth(), NewWidth);
    Y = OffsetAt(iPlacement / kPlacementsPerRow, ImageHeight(), NewHeight);
    txtField[kFieldLeft]->Text(ToText(X));
    txtField[kFieldTop]->Text(ToText(Y));
  } catch (...) {
    QDK_TRAILER(zCalcPosition, QDK_PARAMETERS(), QDK_LOCALS(X, Y, NewWidth, NewHeight));
  }
}

void frmResizeCanvas::txtField_Change(std::int32_t Index) {
  try {
    KeepAspect(Index, false);
    // The changes that the line above raises compute the position too.
    if (Index == kFieldWidth || Index == kFieldHeight) zCalcPosition();
  } catch (...) {
    QDK_TRAILER(txtField_Change, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmResizeCanvas::cmdAction_Click(std::int32_t Index) {
  double Width = 0, Height = 0;
  try {
    if (Index == kActionCancel) return Unload();
    Width = Field(kFieldWidth);
    Height = Field(kFieldHeight);
    if (Width >= 1 && Height >= 1) {
      if (Succeeds([&] {
            Source.ResizeCanvas(ToInt32(Width), ToInt32(Height), ToInt32(Field(kFieldLeft)),
                                ToInt32(Field(kFieldTop)), cpkColor.Value());
          })) {
        Success = true;
      }
    } else {
      RefuseSize();
    }
    if (!Success) return;
    StoreOptions();
    Unload();
  } catch (...) {
    QDK_TRAILER(cmdAction_Click, QDK_PARAMETERS(Index), QDK_LOCALS(Width, Height));
  }
}

void frmResizeCanvas::StoreOptions() {
  const auto shared = modProcessing::GetOptions();
  Options& Options = Required(shared);
  StoreTogether([&] {
    Options.ResizeCanvasColor(cpkColor.Value());
    Options.ResizeCanvasWidth(ToInt32(Field(kFieldWidth)));
    Options.ResizeCanvasHeight(ToInt32(Field(kFieldHeight)));
    Options.ResizeCanvasLockAspectRatio(chkAspect.Value() == 1);
    Options.ResizeCanvasPlacement(iPlacement);
  });
}

std::string frmResizeCanvas::qdkDumpModuleVariables() const {
  return QDK_FIELDS(Success, SafeToUnload, ResultData, Source, iPlacement);
}

}  // namespace kestrel
