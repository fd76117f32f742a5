#pragma once

#include <QGridLayout>
#include <QPushButton>
#include <QWidget>

#include "NoticeText.h"

namespace kestrel::qt {

/// A slim bar with a text that the user should read, a button if one is offered, and a cross that closes it.
///
/// It never takes the focus by itself, nor by a click. Tab leads into it, where Return presses a button and
/// Escape closes the strip; all other keys stay the editor's.
class NoticeStrip final : public QWidget {
  Q_OBJECT

 public:
  explicit NoticeStrip(QWidget* parent);

  /// Shows it with this text, and tells those who cannot see it; an empty text hides it. `button` is the
  /// caption of the button, empty for none.
  void tell(const QString& text, const QString& button);

  /// How high it wants to be at that width, but no more than `most`.
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
