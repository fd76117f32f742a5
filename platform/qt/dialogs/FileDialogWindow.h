#pragma once

#include <QFileDialog>
#include <QPointer>
#include <vector>

namespace kestrel::qt {

/// The toolkit's file dialog, into which other widgets can be moved.
///
/// Extra height set before it shows stays free below its own controls; moved widgets keep their distance from
/// the file-type label there when the dialog is resized.
class FileDialogWindow final : public QFileDialog {
  Q_OBJECT

 public:
  explicit FileDialogWindow(QWidget* parent);
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

  void placeGuests();

  std::vector<Guest> guests_;
  int roomBelow_ = 0;
  bool pathMustExist_ = false;
};

}  // namespace kestrel::qt
