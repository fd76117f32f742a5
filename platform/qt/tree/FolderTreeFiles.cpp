#include "FolderTreeFiles.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <filesystem>

#include "TreeModel.h"
#include "platform/os/Paths.h"
#include "platform/qt/exchange/FileExchange.h"

namespace kestrel::qt {
namespace {

/// Empty for a node that is no folder.
std::filesystem::path folderOf(const QModelIndex& index) {
  const TreeItem* const item = TreeModel::itemOf(index);
  return item ? os::pathOf(item->Tag()) : std::filesystem::path();
}

/// Whether the node's folder is below a drive, so that it can be copied and moved.
bool isBelowADrive(const QModelIndex& index) {
  return !folderOf(index).empty() && !folderOf(index.parent()).empty();
}

}  // namespace

FolderTreeFiles::FolderTreeFiles(TreeWidget& tree, const SiteServices& services)
    : QObject(&tree), receiver_(tree, services) {
  tree.setFiles(this);
}

void FolderTreeFiles::useKey(const QKeyEvent& event, const QModelIndex& index) {
  if (event.matches(QKeySequence::Paste)) return receiver_.paste(folderOf(index));
  if (!isBelowADrive(index)) return;
  const bool move = event.matches(QKeySequence::Cut);
  QGuiApplication::clipboard()->setMimeData(new FilesMimeData({{os::textOf(folderOf(index))}, move}));
}

bool FolderTreeFiles::dragEntered(const QDropEvent& event) {
  receiver_.dragEntered(event);
  return receiver_.bringsFiles();
}

Qt::DropAction FolderTreeFiles::dropAction(const QDropEvent& event, const QModelIndex& index) {
  return receiver_.dropAction(event, folderOf(index));
}

void FolderTreeFiles::drop(QDropEvent& event, const QModelIndex& index) {
  receiver_.drop(event, folderOf(index));
}

}  // namespace kestrel::qt
