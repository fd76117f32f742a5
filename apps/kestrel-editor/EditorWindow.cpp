#include "EditorWindow.h"

#include <utility>

#include "base/Numbers.h"
#include "base/RuntimeError.h"
#include "settings/modProcessing.h"

namespace kestrel::app {
namespace {

constexpr std::size_t kKeyPrefix = 3;  // "btn"

}  // namespace

EditorWindow::EditorWindow(std::function<void()> closed)
    : form_(modProcessing::Platform().CreateForm("frmImageEditor")),
      editor_(std::make_unique<ImageProcessingCtl>(Bind<Site>(*form_, "Processing"))) {
  const auto keep = [this](Connection connection) { connections_.push_back(std::move(connection)); };
  keep(form_->Load.Connect([this] {
    editor_->Initialize();
    modProcessing::WindowPositions().LoadPosition(*form_, {});
    showName();
  }));
  keep(form_->QueryUnload.Connect([this](bool& cancel, std::int32_t) { close(cancel); }));
  keep(form_->Unloaded.Connect(std::move(closed)));
  keep(editor_->ExitRequest.Connect([this] { form_->Unload(); }));
  keep(editor_->ImageOpen.Connect([this](const std::string&) { showName(); }));
  keep(editor_->ImageSave.Connect([this](const std::string&) { showName(); }));
}

EditorWindow::~EditorWindow() { editor_->Terminate(); }

void EditorWindow::showName() { modProcessing::SetWindowCaption(*form_, {}, editor_->Filename()); }

void EditorWindow::close(bool& cancel) {
  if (!editor_->SaveChanges()) {
    cancel = true;
    return;
  }
  modProcessing::WindowPositions().SavePosition(*form_, {});
}

void EditorWindow::runCommand(const std::string& key) {
  auto& moorage = Bind<Moorage>(Bind<Site>(*form_, "Processing"), "mrgUI");
  for (std::int32_t i = 1; i <= moorage.Commands().Count(); ++i) {
    Command& command = moorage.Commands().Item(i);
    if (command.CommandType() != kCommandButton || LowerCase(command.Name()).substr(kKeyPrefix) != key) {
      continue;
    }
    if (!command.Enabled()) {
      throw RuntimeError(err::kInvalidCall, "The command \"" + key + "\" cannot be used now.");
    }
    moorage.CommandClick(command);
    return;
  }
  throw RuntimeError(err::kInvalidCall, "There is no command \"" + key + "\".");
}

void EditorWindow::expectNobody() {
  const auto giveUp = [](std::string& filename, bool& cancelDefault) { cancelDefault = filename.empty(); };
  connections_.push_back(editor_->RequestOpenFilename.Connect(giveUp));
  connections_.push_back(editor_->RequestSaveFilename.Connect(giveUp));
}

}  // namespace kestrel::app
