#include "FileReceiver.h"

#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QTimer>
#include <algorithm>
#include <system_error>
#include <utility>

#include "FileExchange.h"
#include "platform/os/Paths.h"
#include "platform/qt/core/Blocking.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Handles.h"

namespace kestrel::qt {
namespace {

namespace fs = std::filesystem;

bool isSame(const fs::path& one, const fs::path& other) {
  if (one == other) return true;
  std::error_code failed;
  return fs::equivalent(one, other, failed) && !failed;
}

/// Whether a path is a folder or in it, at any depth.
bool isIn(const fs::path& path, const fs::path& folder) {
  return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

/// The names without those that are in the folder already.
std::vector<std::string> fromElsewhere(std::vector<std::string> names, const fs::path& folder) {
  // Nearly always all files come from one folder.
  fs::path last;
  bool lastIsOwn = false;
  std::erase_if(names, [&](const std::string& name) {
    const fs::path path = os::pathOf(name);
    if (path.parent_path() != last) {
      last = path.parent_path();
      lastIsOwn = isSame(last, folder);
    }
    return lastIsOwn;
  });
  return names;
}

}  // namespace

FileReceiver::FileReceiver(QWidget& widget, const SiteServices& services)
    : widget_(widget), services_(services) {}

bool FileReceiver::transfer(const std::vector<std::string>& names, const fs::path& folder, bool move) {
  if (names.empty()) return true;
  const QPointer<FileReceiver> self(this);
  const WindowHandle owner = handleOf(&widget_);
  const std::string buffer = nameBuffer(names);
  bool done = false;
  guarded([&] {
    const OpenCalls::Call call(services_.calls);
    done = move ? services_.files.MoveFiles(buffer, os::textOf(folder), 0, owner)
                : services_.files.CopyFiles(buffer, os::textOf(folder), 0, owner);
  });
  if (self) Q_EMIT transferred();
  return done;
}

void FileReceiver::paste(const fs::path& folder) {
  const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
  if (!data || !holdsFiles(*data) || folder.empty()) return;
  const ExchangedFiles files = filesOf(*data);
  if (!files.move) {
    transfer(files.names, folder, false);
    return;
  }
  // A file that stays where it is has been pasted. Moved files must not be pasted again.
  if (!transfer(fromElsewhere(files.names, folder), folder, true)) return;
  // The user may have copied something else in the meantime.
  const QMimeData* const now = QGuiApplication::clipboard()->mimeData();
  if (now && filesOf(*now).names == files.names) QGuiApplication::clipboard()->clear();
}

void FileReceiver::dragEntered(const QDropEvent& event) {
  dragged_.clear();
  over_.clear();
  dropped_.clear();
  const QMimeData* const data = event.mimeData();
  // Asked for once: the source may be another program.
  if (data && holdsFiles(*data)) dragged_ = filesOf(*data).names;
}

Qt::DropAction FileReceiver::dropAction(const QDropEvent& event, const fs::path& folder) {
  if (dragged_.empty() || folder.empty() || isBlockedByDialog(widget_)) return Qt::IgnoreAction;
  if (folder != over_) {
    dropped_ = fromElsewhere(dragged_, folder);
    // A folder cannot be put into itself.
    std::erase_if(dropped_, [&](const std::string& name) { return isIn(folder, os::pathOf(name)); });
    over_ = folder;
  }
  if (dropped_.empty()) return Qt::IgnoreAction;
  const Qt::DropActions possible = event.possibleActions();
  const bool canMove = possible & Qt::MoveAction;
  // Where the source expects a link, copying leaves the file to it as well.
  const bool canCopy = possible & (Qt::CopyAction | Qt::LinkAction);
  const bool move = canMove && ((event.modifiers() & Qt::ShiftModifier) || !canCopy);
  if (!move && !canCopy) return Qt::IgnoreAction;
  return move ? Qt::MoveAction : possible & Qt::CopyAction ? Qt::CopyAction : Qt::LinkAction;
}

void FileReceiver::drop(QDropEvent& event, const fs::path& folder) {
  const Qt::DropAction action = dropAction(event, folder);
  dragged_.clear();
  if (action == Qt::IgnoreAction) return event.ignore();
  const bool move = action == Qt::MoveAction;
  // The source must not delete what is moved here.
  event.setDropAction(move ? Qt::TargetMoveAction : action);
  event.accept();
  widget_.activateWindow();  // a question may follow
  // The source of the drag waits for the end of this event.
  QTimer::singleShot(
      0, this, [this, names = std::exchange(dropped_, {}), folder, move] { transfer(names, folder, move); });
}

}  // namespace kestrel::qt
