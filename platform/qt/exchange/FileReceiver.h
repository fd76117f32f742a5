#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/qt/site/SiteServices.h"

class QDropEvent;

namespace kestrel::qt {

/// Receives files for folders: from the clipboard, and from drags over one widget.
///
/// Copying and moving may show dialogs, during which widget and receiver may be destroyed.
class FileReceiver final : public QObject {
  Q_OBJECT

 public:
  /// The widget owns the dialogs, and must outlive the receiver.
  FileReceiver(QWidget& widget, const SiteServices& services);

  /// Copies the clipboard's files into the folder, or moves them if they were cut.
  void paste(const std::filesystem::path& folder);

  /// A drag has come, which may bring files, or has left.
  void dragEntered(const QDropEvent& event);
  void dragLeft() { dragged_.clear(); }
  /// Whether the drag brings files.
  bool bringsFiles() const { return !dragged_.empty(); }
  /// What its drop on the folder would do now: copy, move with Shift, or nothing, as for files of the folder
  /// itself. An empty path is no folder.
  Qt::DropAction dropAction(const QDropEvent& event, const std::filesystem::path& folder);
  /// Accepts the drop on the folder, and carries it out when the drag has ended.
  void drop(QDropEvent& event, const std::filesystem::path& folder);

 Q_SIGNALS:
  /// An operation on files of the folder has ended, complete or not.
  void transferred();

 private:
  bool transfer(const std::vector<std::string>& names, const std::filesystem::path& folder, bool move);

  QWidget& widget_;
  SiteServices services_;
  std::vector<std::string> dragged_;
  // What of it a drop would bring into the folder that the drag was over last.
  std::filesystem::path over_;
  std::vector<std::string> dropped_;
};

}  // namespace kestrel::qt
