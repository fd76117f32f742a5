#pragma once

#include <QColor>
#include <QToolButton>

namespace kestrel::qt {

/// A button that shows a color and opens a menu to choose another. The menu includes the extra choice ("no
/// color") if `enhancedVisible` is set.
class ColorPickerWidget final : public QToolButton {
  Q_OBJECT
  Q_PROPERTY(QString enhancedCaption READ enhancedCaption WRITE setEnhancedCaption)
  Q_PROPERTY(bool enhancedVisible READ enhancedVisible WRITE setEnhancedVisible)

 public:
  explicit ColorPickerWidget(QWidget* parent = nullptr);

  QColor color() const { return color_; }
  bool enhancedSelected() const { return enhancedSelected_; }
  bool enhancedVisible() const { return enhancedVisible_; }
  const QString& enhancedCaption() const { return enhancedCaption_; }

  /// Shows the color as selected, or with `enhanced` the extra choice.
  void show(const QColor& color, bool enhanced);
  using QWidget::show;
  void setEnhancedVisible(bool value);
  void setEnhancedCaption(const QString& value);

  /// Opens the menu below the button, which need not be visible itself.
  void dropDown();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 Q_SIGNALS:
  void colorChosen(const QColor& color);
  void enhancedChosen();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void chooseFromDialog();

  QColor color_ = Qt::black;
  QString automatic_;  ///< the extra choice's caption at first
  QString enhancedCaption_;
  bool enhancedSelected_ = false;
  bool enhancedVisible_ = true;
};

}  // namespace kestrel::qt
