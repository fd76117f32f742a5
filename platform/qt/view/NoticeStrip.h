#pragma once

#include <QGridLayout>
#include <QPushButton>
#include <QWidget>

#include "NoticeText.h"

namespace kestrel::qt {

/// A strip with a notice, an optional button, and a close button.
///
/// It never takes the focus by itself or by a click. Tab moves the focus into it, where Return presses a
/// button and Escape closes the strip; all other keys go to the editor.
class NoticeStrip final : public QWidget {
  Q_OBJECT

 public:
  explicit NoticeStrip(QWidget* parent);

  /// Shows it with this text and announces it to screen readers; an empty text hides it. `button` is the
  /// caption of the button, empty for none.
  void showText(const QString& text, const QString& button);

  /// The preferred height at that width, at most `most`.
  int heightAt(int width, int most);

 Q_SIGNALS:
  void buttonPressed();
  void closed();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void arrangeFor(int width);

  QGridLayout* layout_;
  NoticeText* text_;
  QPushButton* button_;
  bool buttonBelow_ = false;
};

}  // namespace kestrel::qt
