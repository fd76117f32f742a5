#pragma once

#include <QColor>
#include <QToolButton>

namespace kestrel::qt {

/// A button that shows a colour and opens a list to choose another from. Its extra choice, which is no
/// colour, stands in the list where `enhancedVisible` says so.
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

  /// Shows the colour as the chosen one, or with `enhanced` the extra choice.
  void show(const QColor& color, bool enhanced);
  using QWidget::show;
  void setEnhancedVisible(bool value) { enhancedVisible_ = value; }
  void setEnhancedCaption(const QString& value) { enhancedCaption_ = value; }

  /// Opens the list below the button, which itself need not be shown.
  void dropDown();

 Q_SIGNALS:
  void colorChosen(const QColor& color);
  void enhancedChosen();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void chooseFromDialog();

  QColor color_ = Qt::black;
  QString enhancedCaption_;
  bool enhancedSelected_ = false;
  bool enhancedVisible_ = true;
};

}  // namespace kestrel::qt
