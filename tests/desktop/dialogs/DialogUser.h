#pragma once

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <stdexcept>
#include <string>

namespace kestrel::desktop {

/// A user of an open dialog. Keys go to the dialog's window, and from there to the control that has the
/// focus; the mouse presses whatever is at a place of the window.
class DialogUser {
 public:
  explicit DialogUser(QWidget& window);

  QWidget& window() { return window_; }
  bool isOpen() const { return window_.isVisible(); }

  /// The control of that name; element 1 of the array "txtField" is "txtField_1".
  template <typename T>
  T& part(const char* name) {
    T* const found = window_.findChild<T*>(QLatin1String(name));
    if (!found) throw std::runtime_error(std::string("There is no control ") + name + ".");
    return *found;
  }
  std::string text(const char* edit) { return part<QLineEdit>(edit).text().toStdString(); }
  std::string label(const char* name);
  /// The name of the control that has the focus.
  std::string focus() const;

  // Keys.
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});
  void type(const char* text);
  void paste(const char* text);
  /// The controls that Tab reaches from the one that has the focus, until the focus is back there.
  QStringList tabOrder();

  // Mouse.
  void click(QWidget& control);
  /// Clicks the middle of a control, or its left end, where a check box or an option button is.
  void click(const char* name) { click(part<QWidget>(name)); }
  /// Opens the list and clicks an entry.
  void choose(const char* list, int index);
  void turnWheel(const char* name, int eighthsOfDegree);

 private:
  QWidget& window_;
};

/// Runs `open`, and `use` with a user of the modal dialog that it opens; closes the dialog if it is open
/// then.
void useDialog(const std::function<void()>& open, const std::function<void(DialogUser&)>& use);

/// Expects that `action` shows a message box with this title and text, which is then closed.
void expectBox(const std::string& title, const std::string& text, const std::function<void()>& action);

}  // namespace kestrel::desktop
