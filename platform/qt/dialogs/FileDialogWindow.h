#pragma once

#include <QFileDialog>
#include <QPointer>
#include <vector>

class QLineEdit;
class QSplitter;
class QTreeView;

namespace kestrel::engine {
class ThumbnailReader;
}

namespace kestrel::qt {

/// The toolkit's file dialog with a preview of the picture that is selected, into which other widgets can be
/// moved.
///
/// Quotation marks around a typed name are removed, unless a file of that very name exists.
///
/// Extra height set before it shows stays free below its own controls; moved widgets keep their distance from
/// the file-type label there when the dialog is resized.
class FileDialogWindow final : public QFileDialog {
  Q_OBJECT

 public:
  /// `reader` reads the previews; it must outlive the dialog.
  FileDialogWindow(engine::ThumbnailReader& reader, QWidget* parent);
  ~FileDialogWindow() override;

  /// If set, a save to a folder that does not exist is refused.
  void setPathMustExist(bool value) { pathMustExist_ = value; }

  /// The rectangle of the file-type row's label.
  QRect fileTypeLabel() const;
  /// Moves a widget into the dialog; the destructor returns it to its parent and position. A position below
  /// the lower edge is moved inside.
  void embedWidget(QWidget& widget, const QPoint& position);
  /// Grows to the size; extra height goes below the dialog's own controls.
  void growTo(const QSize& wanted);

  void accept() override;

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  struct Guest {
    QPointer<QWidget> widget;
    QPointer<QWidget> home;
    QRect place;
    bool shown;
    QPoint position;
  };

  void addPreview(engine::ThumbnailReader& reader);
  void widenColumns();
  void updateOpenButton();
  void removeQuotes();
  bool folderExists();
  void placeGuests();

  std::vector<Guest> guests_;
  int roomBelow_ = 0;
  bool pathMustExist_ = false;
  QLineEdit* name_ = nullptr;
  QTreeView* files_ = nullptr;
  QSplitter* columns_ = nullptr;  ///< places, files, preview
};

}  // namespace kestrel::qt
