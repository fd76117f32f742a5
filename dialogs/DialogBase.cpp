#include "DialogBase.h"

#include <utility>

#include "diagnostics/Trailer.h"
#include "settings/modProcessing.h"

namespace kestrel {
namespace {

constexpr std::int32_t kModal = 1;

}  // namespace

DialogBase::DialogBase(const char* formName, modTollgarthSupport::Counted counted)
    : iCounted(counted), iForm(modProcessing::Platform().CreateForm(formName)) {
  Keep(iForm->Load.Connect([this] {
    modTollgarthSupport::qdkCountInstance(iCounted);
    iForm->ClearIcon();
    Form_Load();
    QDK_RESUME_NEXT(modProcessing::FormSkin().ApplyToForm(*iForm, -1, -1));
  }));
  Keep(iForm->Activate.Connect([this] {
    if (std::exchange(iActivated, true)) return;
    modProcessing::Platform().Screen().MousePointer(kBusyDefault);
    Form_FirstActivate();
  }));
  Keep(iForm->QueryUnload.Connect([this](bool& cancel, std::int32_t) { Form_QueryUnload(cancel); }));
  Keep(iForm->Unloaded.Connect([this] { modTollgarthSupport::qdkUncountInstance(iCounted); }));
  for (std::int32_t index : {kActionOK, kActionCancel}) {
    auto& button = Bind<CommandButton>(*iForm, "cmdAction", index);
    Keep(button.Click.Connect([this, index] { cmdAction_Click(index); }));
  }
}

DialogBase::~DialogBase() {
  SafeToUnload = true;
  QDK_RESUME_NEXT(iForm->Unload());
}

void DialogBase::ShowModal() { modProcessing::FormUtility().ShowDialog(*iForm, kModal, nullptr); }

void DialogBase::Form_QueryUnload(bool& Cancel) {
  try {
    if (SafeToUnload) return;
    iForm->Hide();
    Cancel = true;
  } catch (...) {
    QDK_TRAILER(Form_QueryUnload, QDK_PARAMETERS(Cancel), QDK_LOCALS());
  }
}

bool DialogBase::IsWindowVisible() { return modProcessing::WindowFunctions().IsWindowVisible(iForm->hWnd()); }

void DialogBase::Exclaim(const std::string& text) {
  modProcessing::Platform().UserInterface().MessageBox(text, kBoxExclamation, iForm->Caption());
}

void DialogBase::MakeNumberBox(TextBox& box) {
  modProcessing::WindowFunctions().AddWindowStyle(box.hWnd(), kStyleDigitsOnly);
  Keep(box.GotFocus.Connect([&box] { modProcessing::FormUtility().SelectAllText(box); }));
}

}  // namespace kestrel
