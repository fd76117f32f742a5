#pragma once

#include <QObject>

#include "TreeWidget.h"
#include "platform/qt/exchange/FileReceiver.h"

namespace kestrel::qt {

/// Lets the user put files into the folders of a tree, by the clipboard and by dragging, and put a folder on
/// the clipboard. The tags of the nodes are their folders.
class FolderTreeFiles final : public QObject, public TreeWidget::Files {
  Q_OBJECT

 public:
  /// Lives as long as the tree, which owns it.
  FolderTreeFiles(TreeWidget& tree, const SiteServices& services);

  void useKey(const QKeyEvent& event, const QModelIndex& index) override;
  bool dragEntered(const QDropEvent& event) override;
  void dragLeft() override { receiver_.dragLeft(); }
  Qt::DropAction dropAction(const QDropEvent& event, const QModelIndex& index) override;
  void drop(QDropEvent& event, const QModelIndex& index) override;

 private:
  FileReceiver receiver_;
};

}  // namespace kestrel::qt
