#include "frmImageEditor.h"

#include <utility>

#include "diagnostics/Trailer.h"
#include "imaging/contract/PropertyStage.h"
#include "settings/modProcessing.h"

namespace kestrel {

frmImageEditor::frmImageEditor()
    : iForm("frmImageEditor"), iSite(Bind<Site>(*iForm, "Processing")), iProcessing(iSite) {
  const auto keep = [this](Connection connection) { iConnections.push_back(std::move(connection)); };
  keep(iForm->Load.Connect([this] { Form_Load(); }));
  keep(iForm->Activate.Connect([this] { Form_Activate(); }));
  keep(iForm->Resize.Connect([this] { Form_Resize(); }));
  keep(iForm->QueryUnload.Connect([this](bool& cancel, std::int32_t) { Form_QueryUnload(cancel); }));
  keep(iProcessing.ExitRequest.Connect([this] { Processing_ExitRequest(); }));
  // A host initializes the editor and opens a picture before it shows the window.
  dynamic_cast<PropertyStage&>(*iForm).InitializeControls();
}

void frmImageEditor::End() {
  SafeToUnload = true;
  QDK_RESUME_NEXT(iProcessing.Terminate());
  QDK_RESUME_NEXT(iForm->Unload());
  QueryUnload.DisconnectAll();
  iConnections.clear();
  QDK_RESUME_NEXT(iProcessing.Retire());
}

void frmImageEditor::Form_Load() {
  try {
    if (!modProcessing::WindowPositions().RegistryKey().empty()) {
      modProcessing::WindowPositions().LoadPosition(*iForm, {});
    }
  } catch (...) {
    QDK_TRAILER(Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmImageEditor::Form_Activate() {
  try {
    if (std::exchange(iActivated, true)) return;
    modProcessing::Platform().Screen().MousePointer(kBusyDefault);
    // The magnifier exists from `Initialize` on, and can draw once there is a picture.
    frmZoom* const Magnifier = iProcessing.ZoomWindow();
    if (Magnifier && iProcessing.Image()) Magnifier->RedrawZoomWindow();
  } catch (...) {
    QDK_TRAILER(Form_Activate, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmImageEditor::Form_Resize() {
  try {
    if (iForm->WindowState() == kWindowMinimized) return;
    iSite.Move(0, 0, iForm->ScaleWidth(), iForm->ScaleHeight());
  } catch (...) {
    QDK_TRAILER(Form_Resize, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmImageEditor::Form_QueryUnload(bool& Cancel) {
  try {
    QueryUnload();
    if (SafeToUnload) return;
    if (!modProcessing::WindowFunctions().IsWindowVisible(iForm->hWnd())) {
      iProcessing.Terminate();
    } else if (!iProcessing.Changed() || zSaveChanges()) {
      iProcessing.Terminate();
      iForm->Hide();
    }
    Cancel = true;
  } catch (...) {
    QDK_TRAILER(Form_QueryUnload, QDK_PARAMETERS(Cancel), QDK_LOCALS());
  }
}

/// Only this way of closing stores the position.
bool frmImageEditor::zSaveChanges() {
  if (!iProcessing.SaveChanges()) return false;
  zSavePosition();
  return true;
}

/// A position that cannot be stored does not keep the window from being hidden: it would be unloaded.
void frmImageEditor::zSavePosition() {
  try {
    if (modProcessing::WindowPositions().RegistryKey().empty()) return;
    modProcessing::WindowPositions().SavePosition(*iForm, {});
  } catch (...) {
    QDK_TRAILER(zSavePosition, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void frmImageEditor::Processing_ExitRequest() {
  try {
    iForm->Unload();
  } catch (...) {
    QDK_TRAILER(Processing_ExitRequest, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

std::string frmImageEditor::qdkDumpModuleVariables() const {
  return QDK_FIELDS(SafeToUnload, iProcessing, iActivated);
}

}  // namespace kestrel
