#pragma once

#include <QFileDialog>
#include <QPointer>
#include <vector>

namespace kestrel::qt {

/// The toolkit's own file dialog, into which other widgets can be moved.
///
/// The room by which it is made higher before it shows stays free below its own controls; widgets that were
/// moved in keep their distance from the file-type label there, however the dialog is resized.
class FileDialogWindow final : public QFileDialog {
  Q_OBJECT

 public:
  explicit FileDialogWindow(QWidget* parent);
  ~FileDialogWindow() override;

  /// Names of a save are refused whose folder does not exist.
  void setPathMustExist(bool value) { pathMustExist_ = value; }

  /// The rectangle of the file-type row's label.
  QRect fileTypeLabel() const;
  /// Takes a widget in until the dialog dies, then gives it back to its parent and place. A position beyond
  /// the lower edge is brought in.
  void takeIn(QWidget& widget, const QPoint& position);
  /// Grows to the size; what is added to the height goes below the dialog's own controls.
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
