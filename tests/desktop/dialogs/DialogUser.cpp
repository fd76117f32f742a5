#include "DialogUser.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>

#include "../EditorBench.h"

namespace kestrel::desktop {
namespace {

void clickAt(QWidget& widget, QPoint at) {
  QWidget& window = *widget.window();
  QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, widget.mapTo(&window, at));
  settle();
}

}  // namespace

DialogUser::DialogUser(QWidget& window) : window_(window) {
  QApplication::setActiveWindow(&window_);
  settle();
}

std::string DialogUser::label(const char* name) { return part<QLabel>(name).text().toStdString(); }

std::string DialogUser::focus() const {
  const QWidget* const focused = window_.focusWidget();
  return focused ? focused->objectName().toStdString() : std::string();
}

void DialogUser::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
  pressKey(window_, key, modifiers);
  settle();
}

void DialogUser::type(const char* text) {
  for (const char* character = text; *character != '\0'; ++character) {
    QTest::keyClick(window_.windowHandle(), *character);
  }
  settle();
}

void DialogUser::paste(const char* text) {
  QApplication::clipboard()->setText(QString::fromUtf8(text));
  pressKey(window_, Qt::Key_V, Qt::ControlModifier, QStringLiteral("\x16"));
  settle();
}

QStringList DialogUser::tabOrder() {
  QStringList order;
  const QWidget* const first = window_.focusWidget();
  do {
    order += QString::fromStdString(focus());
    press(Qt::Key_Tab);
  } while (window_.focusWidget() != first && order.size() < 100);
  return order;
}

void DialogUser::click(QWidget& control) {
  constexpr int kBox = 8;
  const bool atLeft = control.inherits("QCheckBox") || control.inherits("QRadioButton");
  clickAt(control, {atLeft ? kBox : control.width() / 2, control.height() / 2});
}

void DialogUser::choose(const char* list, int index) {
  auto& combo = part<QComboBox>(list);
  click(combo);
  ASSERT_TRUE(combo.view()->isVisible());
  const QRect entry = combo.view()->visualRect(combo.model()->index(index, combo.modelColumn()));
  // The list ignores a release right after it has opened.
  QTest::qWait(QApplication::doubleClickInterval() + 50);
  clickAt(*combo.view()->viewport(), entry.center());
}

void DialogUser::turnWheel(const char* name, int eighthsOfDegree) {
  auto& widget = part<QWidget>(name);
  const QPointF at(widget.rect().center());
  QWheelEvent turning(at, widget.mapToGlobal(at), {}, {0, eighthsOfDegree}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
  QApplication::sendEvent(&widget, &turning);
  settle();
}

void useDialog(const std::function<void()>& open, const std::function<void(DialogUser&)>& use) {
  bool used = false;
  whenModalOpens([&](QWidget& window) {
    DialogUser user(window);
    try {
      use(user);
    } catch (const std::exception& error) {
      ADD_FAILURE() << error.what();
    }
    used = true;
    if (window.isVisible()) window.close();
  });
  open();
  EXPECT_TRUE(used) << "no dialog opened";
}

void expectBox(const std::string& title, const std::string& text, const std::function<void()>& action) {
  bool shown = false;
  whenModalOpens([&](QWidget& window) {
    shown = true;
    const auto* const box = dynamic_cast<QMessageBox*>(&window);
    EXPECT_EQ(window.windowTitle().toStdString(), title);
    EXPECT_EQ(box ? box->text().toStdString() : "no message box", text);
    window.close();
  });
  action();
  EXPECT_TRUE(shown) << "no box was shown";
}

}  // namespace kestrel::desktop
