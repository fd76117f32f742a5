#include "DialogBase.h"

#include <utility>

#include "diagnostics/Trailer.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr std::int32_t kModal = 1;

}  // namespace

DialogBase::DialogBase(const char* formName, DialogButtons buttons) : iForm(formName) {
  Keep(iForm->Load.Connect([this] { Form_Load(); }));
  Keep(iForm->Activate.Connect([this] { Form_Activate(); }));
  Keep(iForm->QueryUnload.Connect([this](bool& cancel, std::int32_t) { Form_QueryUnload(cancel); }));
  Keep(iForm->QueryResult.Connect([this](bool& result) { result = Success; }));
  if (buttons == DialogButtons::kHeader) return;
  for (std::int32_t index : {kActionOK, kActionCancel}) {
    auto& button = Bind<CommandButton>(*iForm, "cmdAction", index);
    Keep(button.Click.Connect([this, index] { cmdAction_Click(index); }));
  }
}

DialogBase::~DialogBase() {
  SafeToUnload = true;
  QDK_RESUME_NEXT(iForm->Unload());
}

bool DialogBase::ShowModal(Control* Owner) {
  return modProcessing::FormUtility().ShowDialog(*iForm, kModal, Owner);
}

void DialogBase::Form_Activate() {
  try {
    if (std::exchange(iActivated, true)) return;
    modProcessing::Platform().Screen().MousePointer(kBusyDefault);
    Form_FirstActivate();
  } catch (...) {
    QDK_TRAILER_OF(TypeName(), Form_Activate, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void DialogBase::Form_QueryUnload(bool& Cancel) {
  try {
    if (SafeToUnload) return Form_UnloadForGood();
    iForm->Hide();
    Cancel = true;
  } catch (...) {
    QDK_TRAILER_OF(TypeName(), Form_QueryUnload, QDK_PARAMETERS(Cancel), QDK_LOCALS());
  }
}

void DialogBase::ApplyLook() { QDK_RESUME_NEXT(modProcessing::FormSkin().ApplyToForm(*iForm, -1, -1)); }

bool DialogBase::IsWindowVisible() { return modProcessing::WindowFunctions().IsWindowVisible(iForm->hWnd()); }

void DialogBase::Exclaim(const std::string& text) {
  modProcessing::Platform().UserInterface().MessageBox(text, kBoxExclamation, iForm->Caption(),
                                                       iForm->hWnd());
}

void DialogBase::MakeNumberBox(TextBox& box) {
  modProcessing::WindowFunctions().AddWindowStyle(box.hWnd(), kStyleDigitsOnly);
}

}  // namespace kestrel
