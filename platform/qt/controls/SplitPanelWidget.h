#pragma once

#include <QPointer>
#include <QWidget>

namespace kestrel::qt {

class SplitDivider;

/// Two widgets side by side, with a divider that the mouse drags. With the focus it moves by the keys Left
/// and Right, in single pixels with Ctrl, and to the ends by Home and End; a double click restores its first
/// position.
class SplitPanelWidget final : public QWidget {
  Q_OBJECT

 public:
  explicit SplitPanelWidget(QWidget* parent = nullptr);

  /// Takes the widgets as children.
  void setPanes(QWidget& first, QWidget& second);

  /// The width of the first pane as it was set last; it is shown narrower where it does not fit.
  int position() const { return position_; }
  void setPosition(int position);
  /// As the user: the divider stays inside the panel.
  void movePosition(int position);

  /// The divider's place now.
  int shownPosition() const;

  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void positionChanged();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  int dividerWidth() const;
  int largest() const;
  void arrange();

  int position_;
  QPointer<QWidget> first_;
  QPointer<QWidget> second_;
  SplitDivider* divider_;
};

}  // namespace kestrel::qt
