#include "frmResize.h"

#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/Image.h"
#include "settings/StoreTogether.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr std::int32_t kScalePixels = 0;
constexpr std::int32_t kScalePercent = 1;
/// List indices of resampling methods.
constexpr std::int32_t kListPixel = 0;
constexpr std::int32_t kListBicubic = 2;

/// The hourglass pointer while it lives.
class Hourglass {
 public:
  Hourglass() { modProcessing::FormUtility().SetPointer(kBusyHourglass); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;
  ~Hourglass() { QDK_RESUME_NEXT(modProcessing::FormUtility().SetPointer(kBusyDefault)); }
};

/// Selects an entry by its stored index, or another one for a stored number without an entry.
void Select(ComboBox& list, std::int32_t stored, std::int32_t otherwise) {
  list.ListIndex(stored >= 0 && stored < list.ListCount() ? stored : otherwise);
}

}  // namespace

frmResize::frmResize(IImageProcessingCtl& source)
    : SizeDialog("frmResize", source),
      cboScale(Bind<ComboBox>(Form(), "cboScale")),
      cboResample(Bind<ComboBox>(Form(), "cboResample")),
      lblUnit{&Bind<Label>(Form(), "lblUnit", 0), &Bind<Label>(Form(), "lblUnit", 1)} {
  Keep(cboScale.Click.Connect([this] { cboScale_Click(); }));
}

void frmResize::Form_Load() {
  try {
    Form().ClearIcon();
    MakeNumberBoxes();
    const auto shared = modProcessing::GetOptions();
    Options& Options = Required(shared);
    chkAspect.Value(Options.ResizeLockAspectRatio() ? 1 : 0);
    Select(cboResample, Options.ResizeMode(), kListBicubic);
    Select(cboScale, Options.ResizeScale(), kScalePixels);
    // With the ratio locked the stored height survives: setting it recomputes the width.
    txtField[kFieldWidth]->Text(ToText(Options.ResizeWidth()));
    txtField[kFieldHeight]->Text(ToText(Options.ResizeHeight()));
    ShowOriginalSize();
    ApplyLook();
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

bool frmResize::IsPercent() const { return cboScale.ListIndex() == kScalePercent; }

void frmResize::ShowUnit() {
  for (Label* const label : lblUnit) label->Caption(IsPercent() ? "percent" : "pixels");
}

void frmResize::cboScale_Click() {
  try {
    ShowUnit();
  } catch (...) {
    QDK_TRAILER(cboScale_Click, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmResize::txtField_Change(std::int32_t Index) {
  try {
    KeepAspect(Index, IsPercent());
  } catch (...) {
    QDK_TRAILER(txtField_Change, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmResize::cmdAction_Click(std::int32_t Index) {
  float Width = 0, Height = 0;
  try {
    const Hourglass busy;
    if (Index == kActionCancel) return Unload();
    const bool percent = IsPercent();
    Width = ToSingle(percent ? ImageWidth() / 100.0 * Field(kFieldWidth) : Field(kFieldWidth));
    Height = ToSingle(percent ? ImageHeight() / 100.0 * Field(kFieldHeight) : Field(kFieldHeight));
    // Ahead of the range test: a refused size leaves the conversion done.
    if (cboResample.ListIndex() != kListPixel) Required(Source.Image()).Convert();
    if (Width >= 1 && Height >= 1) {
      if (Succeeds([&] {
            Source.Resize(ToInt32(Width), ToInt32(Height), cboResample.ItemData(cboResample.ListIndex()));
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

void frmResize::StoreOptions() {
  const auto shared = modProcessing::GetOptions();
  Options& Options = Required(shared);
  StoreTogether([&] {
    Options.ResizeLockAspectRatio(chkAspect.Value() == 1);
    Options.ResizeMode(cboResample.ListIndex());
    Options.ResizeScale(cboScale.ListIndex());
    // As entered: a percentage stays a percentage.
    Options.ResizeWidth(ToInt32(Field(kFieldWidth)));
    Options.ResizeHeight(ToInt32(Field(kFieldHeight)));
  });
}

std::string frmResize::qdkDumpModuleVariables() const {
  return QDK_FIELDS(Success, SafeToUnload, ResultData, Source);
}

}  // namespace kestrel
