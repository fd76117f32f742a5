#include "EditorWindow.h"

#include <utility>

#include "RunCommand.h"
#include "diagnostics/Trailer.h"
#include "settings/modProcessing.h"

namespace kestrel::app {
namespace {

/// The window's name for instance counts and reports.
constexpr char kModule[] = "frmImageEditor";

}  // namespace

EditorWindow::EditorWindow(std::function<void()> closed)
    : form_(kModule), editor_(std::make_unique<ImageProcessingCtl>(Bind<Site>(*form_, "Processing"))) {
  const auto keep = [this](Connection connection) { connections_.push_back(std::move(connection)); };
  keep(form_->Load.Connect([this] { Form_Load(); }));
  keep(form_->QueryUnload.Connect([this](bool& cancel, std::int32_t) { Form_QueryUnload(cancel); }));
  keep(form_->Unloaded.Connect(std::move(closed)));
  keep(editor_->ExitRequest.Connect([this] { Processing_ExitRequest(); }));
  keep(editor_->ImageOpen.Connect([this](const std::string&) { Processing_ImageOpen(); }));
  keep(editor_->ImageSave.Connect([this](const std::string&) { Processing_ImageSave(); }));
  keep(editor_->ImageControl().ModifiedChanged.Connect([this] { igxImage_ModifiedChanged(); }));
}

EditorWindow::~EditorWindow() {
  if (recovery_) recovery_->End();
  editor_->Terminate();
}

void EditorWindow::keepChanges(RecoveryStore& store) {
  recovery_ =
      std::make_unique<Recovery>(*editor_, Bind<Moorage>(Bind<Site>(*form_, "Processing"), "mrgUI"), store);
}

void EditorWindow::Form_Load() {
  try {
    editor_->Initialize();
    modProcessing::WindowPositions().LoadPosition(*form_, {});
    showName();
    if (recovery_) recovery_->Offer();
  } catch (...) {
    QDK_TRAILER_OF(kModule, Form_Load, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void EditorWindow::Form_QueryUnload(bool& Cancel) {
  try {
    if (!editor_->SaveChanges()) {
      Cancel = true;
      return;
    }
    if (recovery_) recovery_->Close();
    modProcessing::WindowPositions().SavePosition(*form_, {});
  } catch (...) {
    QDK_TRAILER_OF(kModule, Form_QueryUnload, QDK_PARAMETERS(Cancel), QDK_LOCALS());
  }
}

void EditorWindow::Processing_ExitRequest() {
  try {
    form_->Unload();
  } catch (...) {
    QDK_TRAILER_OF(kModule, Processing_ExitRequest, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void EditorWindow::Processing_ImageOpen() {
  try {
    showName();
  } catch (...) {
    QDK_TRAILER_OF(kModule, Processing_ImageOpen, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void EditorWindow::Processing_ImageSave() {
  try {
    showName();
  } catch (...) {
    QDK_TRAILER_OF(kModule, Processing_ImageSave, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void EditorWindow::igxImage_ModifiedChanged() {
  try {
    form_->Modified(editor_->ImageControl().Modified());
  } catch (...) {
    QDK_TRAILER_OF(kModule, igxImage_ModifiedChanged, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void EditorWindow::showName() { modProcessing::SetWindowCaption(*form_, kEditorTitle, editor_->Filename()); }

std::string EditorWindow::qdkDumpModuleVariables() const { return QDK_FIELDS(editor_); }

void EditorWindow::runCommand(const std::string& key) {
  app::runCommand(Bind<Moorage>(Bind<Site>(*form_, "Processing"), "mrgUI"), key);
}

void EditorWindow::declineFileRequests() {
  const auto giveUp = [](std::string& filename, bool& cancelDefault) { cancelDefault = filename.empty(); };
  connections_.push_back(editor_->RequestOpenFilename.Connect(giveUp));
  connections_.push_back(editor_->RequestSaveFilename.Connect(giveUp));
}

}  // namespace kestrel::app
