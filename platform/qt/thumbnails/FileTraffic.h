#pragma once

#include <QObject>
#include <filesystem>
#include <set>

#include "platform/qt/exchange/FileReceiver.h"

class QDropEvent;
class QPixmap;

namespace kestrel::thumbnails {
class ThumbnailViewModel;
}

namespace kestrel::qt {

class ThumbnailArea;

/// Exchanges the files of a thumbnail view with other programs: through the clipboard, and by dragging.
///
/// Copying and moving into the folder may show dialogs, during which the view may be destroyed.
class FileTraffic final : public QObject {
  Q_OBJECT

 public:
  FileTraffic(thumbnails::ThumbnailViewModel& view, ThumbnailArea& area, const SiteServices& services);

  /// Puts the selected files on the clipboard, if there are any. Cut ones are moved when they are pasted.
  void copy() { offer(false); }
  void cut() { offer(true); }
  /// Copies the clipboard's files into the folder, or moves them if they were cut.
  void paste();
  /// Whether the file is cut and not pasted yet.
  bool isCut(const std::filesystem::path& file) const { return !cut_.empty() && cut_.contains(file); }
  bool anyCut() const { return !cut_.empty(); }

  /// Drags the selected files until the user drops them.
  void drag();

  /// A drag has come, which may bring files, or has left.
  void dragEntered(const QDropEvent& event) { receiver_.dragEntered(event); }
  void dragLeft() { receiver_.dragLeft(); }
  /// What its drop would do now: copy, move with Shift, or nothing, as for files of the folder itself.
  Qt::DropAction dropAction(const QDropEvent& event);
  /// Accepts the drop, and carries it out when the drag has ended.
  void drop(QDropEvent& event);

 private:
  void offer(bool move);
  void clipboardChanged();
  /// The folder for files that come; empty while none is shown.
  std::filesystem::path target() const;
  QPixmap dragPicture(std::size_t count) const;

  thumbnails::ThumbnailViewModel& view_;
  ThumbnailArea& area_;
  OpenCalls& calls_;
  FileReceiver receiver_;
  std::set<std::filesystem::path> cut_;
};

}  // namespace kestrel::qt
