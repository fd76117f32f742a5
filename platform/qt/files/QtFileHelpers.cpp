#include "QtFileHelpers.h"

#include <QDir>
#include <QElapsedTimer>
#include <QPointer>
#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "ProgressWindow.h"
#include "QuestionWindow.h"
#include "engine/thumbnails/ThumbnailReader.h"
#include "platform/filetransfer/BackgroundTransfer.h"
#include "platform/filetransfer/Texts.h"
#include "platform/filetransfer/Trash.h"
#include "platform/os/Paths.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/dialogs/Modal.h"
#include "platform/qt/services/BusyPointer.h"

namespace kestrel::qt {
namespace {

using transfer::BackgroundTransfer;
using transfer::Operation;
using transfer::Request;

/// Work that ends sooner shows no window.
constexpr std::chrono::milliseconds kShortWork(500);

Request requestOf(Operation operation, const std::string& buffer, const std::string& folder) {
  Request request;
  request.operation = operation;
  for (const std::string& name : transfer::namesOf(buffer)) {
    std::error_code error;
    request.sources.push_back(std::filesystem::absolute(os::pathOf(name), error));
  }
  request.folder = os::pathOf(folder);
  if (operation == Operation::kTrash) request.homeTrash = transfer::homeTrash();
  return request;
}

/// Shows the window until it is answered. False if its owner was destroyed, and the window perhaps with it.
template <typename Window>
bool attended(Window* window, OpenCalls& calls) {
  const QPointer<Window> alive(window);
  execModal(*window, calls);
  const bool answered = alive && !alive->abandoned();
  // At once, since it uses objects of the caller.
  delete alive.data();
  return answered;
}

}  // namespace

QtFileHelpers::QtFileHelpers(UserInterface& boxes, OpenCalls& calls)
    : FileNames(fromQt(QString(QDir::separator()))), boxes_(boxes), calls_(calls) {}

QtFileHelpers::~QtFileHelpers() = default;

std::string QtFileHelpers::ResolvePath(const std::string& Path) {
  // Not by the toolkit, whose texts can't hold a name that is not valid UTF-8.
  std::error_code missing;
  const std::filesystem::path real = std::filesystem::canonical(os::pathOf(Path), missing);
  return missing ? Path : os::textOf(real);
}

bool QtFileHelpers::CopyFiles(const std::string& Buffer, const std::string& Folder, std::int32_t /*Flags*/,
                              WindowHandle Owner) {
  return run(requestOf(Operation::kCopy, Buffer, Folder), Owner);
}

bool QtFileHelpers::MoveFiles(const std::string& Buffer, const std::string& Folder, std::int32_t /*Flags*/,
                              WindowHandle Owner) {
  return run(requestOf(Operation::kMove, Buffer, Folder), Owner);
}

bool QtFileHelpers::DeleteFiles(const std::string& Buffer, const std::string& /*Folder*/, std::int32_t Flags,
                                WindowHandle Owner) {
  const Request request =
      requestOf((Flags & kAllowUndo) != 0 ? Operation::kTrash : Operation::kDelete, Buffer, {});
  if (request.sources.empty()) return true;
  const std::int32_t answer =
      boxes_.MessageBox(transfer::confirmationOf(request), transfer::confirmationStyleOf(request.operation),
                        transfer::titleOf(request.operation), Owner);
  return answer == kAnswerYes && run(request, Owner);
}

bool QtFileHelpers::run(const Request& request, WindowHandle owner) {
  if (request.sources.empty()) return true;
  const OpenCalls::Call call(calls_);
  transfer::Report report;
  {
    BackgroundTransfer transfer(request);
    // Without its owner the work is canceled, and nobody is left to report to. A user who left a disk that
    // hangs knows all there is to report.
    if (!attend(transfer, request, owner) || transfer.state() != BackgroundTransfer::State::kFinished)
      return false;
    report = transfer.report();
  }
  const std::string text = transfer::textOf(report, request);
  if (!text.empty()) {
    boxes_.MessageBox(text, report.failed.empty() ? kBoxInformation : kBoxExclamation,
                      transfer::titleOf(request.operation), owner);
  }
  return report.complete();
}

bool QtFileHelpers::attend(BackgroundTransfer& transfer, const Request& request, WindowHandle owner) {
  for (;;) {
    switch (transfer.waitFor(kShortWork)) {
      case BackgroundTransfer::State::kFinished:
        return true;
      case BackgroundTransfer::State::kAsking:
        if (!ask(transfer, request, dialogParent(owner))) return false;
        break;
      case BackgroundTransfer::State::kWorking: {
        const BusyPause pause;
        const auto question = [this, &transfer, &request](QWidget* parent) {
          return ask(transfer, request, parent);
        };
        return attended(new ProgressWindow(transfer, request.operation, question, dialogParent(owner)),
                        calls_);
      }
    }
  }
}

bool QtFileHelpers::ask(BackgroundTransfer& transfer, const Request& request, QWidget* parent) {
  const BusyPause pause;
  for (auto& reader : readers_) {
    if (!reader) reader = std::make_unique<engine::ThumbnailReader>();
  }
  auto* const window =
      new QuestionWindow(transfer.question(), request.operation, *readers_[0], *readers_[1], parent);
  transfer::Answer answer;
  QObject::connect(window, &QDialog::finished, window, [&answer, window] { answer = window->answer(); });
  if (!attended(window, calls_)) return false;
  transfer.answer(answer);
  return true;
}

}  // namespace kestrel::qt
