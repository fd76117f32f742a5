#include "frmRotate.h"

#include "base/Arithmetic.h"
#include "base/Numbers.h"
#include "base/Required.h"
#include "diagnostics/Trailer.h"
#include "settings/StoreTogether.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr std::size_t kLeft = 0;
constexpr std::size_t kRight = 1;
constexpr std::int32_t kFree = 3;
constexpr std::int32_t kFullTurn = 360;

/// The clockwise angle, the engine's unit: a rotation to the left is 360 degrees minus the angle.
std::int32_t Clockwise(std::int32_t angle, bool left) {
  return left ? CheckedAdd(kFullTurn, CheckedNegate(angle)) : angle;
}

}  // namespace

frmRotate::frmRotate()
    : PreviewDialog("frmRotate"),
      optDirection{&Bind<OptionButton>(Form(), "optDirection", 0),
                   &Bind<OptionButton>(Form(), "optDirection", 1)},
      optDegree{&Bind<OptionButton>(Form(), "optDegree", 0), &Bind<OptionButton>(Form(), "optDegree", 1),
                &Bind<OptionButton>(Form(), "optDegree", 2), &Bind<OptionButton>(Form(), "optDegree", 3)},
      txtDegrees(Bind<TextBox>(Form(), "txtDegrees")) {
  for (OptionButton* option : optDirection) {
    Keep(option->Click.Connect([this, option] { optDirection_Click(option->Index()); }));
  }
  for (OptionButton* option : optDegree) {
    Keep(option->Click.Connect([this, option] { optDegree_Click(option->Index()); }));
  }
  Keep(txtDegrees.Change.Connect([this] { txtDegrees_Change(); }));
  Keep(txtDegrees.GotFocus.Connect([this] { txtDegrees_GotFocus(); }));
}

void frmRotate::Form_Load() {
  try {
    Form().ClearIcon();
    MakeNumberBox(txtDegrees);
    const auto shared = modProcessing::GetOptions();
    Options& Options = Required(shared);
    // A stored direction that is neither left nor right counts as right, so that one option is always
    // selected.
    optDirection[Options.RotateDirection() == ipDirectionLeft ? kLeft : kRight]->Value(true);
    Angle = Options.RotateAngle();
    switch (Angle) {
      case 90:
        optDegree[0]->Value(true);
        break;
      case 180:
        optDegree[1]->Value(true);
        break;
      case 270:
        optDegree[2]->Value(true);
        break;
      default:
        txtDegrees.Text(ToText(Angle));
    }
    ApplyLook();
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmRotate::UpdatePreview() {
  std::int32_t rotation = 0;
  try {
    if (!IsWindowVisible()) return;
    rotation = Clockwise(Angle, optDirection[kLeft]->Value());
    ShowEffect([&](ImageView& image) { image.Effects().Rotate(static_cast<float>(rotation), nullptr, 0); });
  } catch (...) {
    QDK_TRAILER(UpdatePreview, QDK_PARAMETERS(), QDK_LOCALS(rotation));
  }
}

void frmRotate::optDirection_Click(std::int32_t Index) {
  try {
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(optDirection_Click, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmRotate::optDegree_Click(std::int32_t Index) {
  try {
    if (Index == kFree) return txtDegrees_Change();
    Angle = ToInt32(Val(optDegree.at(static_cast<std::size_t>(Index))->Tag()));
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(optDegree_Click, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

void frmRotate::txtDegrees_Change() {
  try {
    optDegree[kFree]->Value(true);
    Angle = ToInt32(Val(txtDegrees.Text()));
    UpdatePreview();
  } catch (...) {
    QDK_TRAILER(txtDegrees_Change, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmRotate::txtDegrees_GotFocus() {
  try {
    modProcessing::FormUtility().SelectAllText(txtDegrees);
  } catch (...) {
    QDK_TRAILER(txtDegrees_GotFocus, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmRotate::cmdAction_Click(std::int32_t Index) {
  try {
    if (Index == kActionCancel) return Unload();
    if (Angle == 0) return Exclaim("Please enter or select an angle");
    const auto shared = modProcessing::GetOptions();
    Options& Options = Required(shared);
    StoreTogether([&] {
      // Stored as entered, so that the dialog reopens with the same values.
      Options.RotateAngle(Angle);
      const bool left = optDirection[kLeft]->Value();
      Angle = Clockwise(Angle, left);
      Options.RotateDirection(left ? ipDirectionLeft : ipDirectionRight);
    });
    ResultData = ToText(Angle);
    Success = true;
    Unload();
  } catch (...) {
    QDK_TRAILER(cmdAction_Click, QDK_PARAMETERS(Index), QDK_LOCALS());
  }
}

std::string frmRotate::qdkDumpModuleVariables() const {
  return QDK_FIELDS(Success, SafeToUnload, ResultData, Angle);
}

}  // namespace kestrel
