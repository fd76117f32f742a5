#include "QtTreeUser.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <stdexcept>

#include "platform/qt/core/Handles.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/site/QtSite.h"
#include "platform/qt/tree/FolderTreeWidget.h"
#include "platform/qt/tree/TreeModel.h"
#include "platform/qt/tree/TreeWidget.h"

namespace kestrel::contract {
namespace {

struct NamedKey {
  std::int32_t code;
  Qt::Key key;
};
constexpr NamedKey kKeys[] = {{32, Qt::Key_Space}, {35, Qt::Key_End},       {36, Qt::Key_Home},
                              {37, Qt::Key_Left},  {38, Qt::Key_Up},        {39, Qt::Key_Right},
                              {40, Qt::Key_Down},  {106, Qt::Key_Asterisk}, {107, Qt::Key_Plus},
                              {109, Qt::Key_Minus}};

Qt::Key keyOf(std::int32_t code) {
  for (const NamedKey& named : kKeys) {
    if (named.code == code) return named.key;
  }
  return static_cast<Qt::Key>(code);
}

Qt::KeyboardModifiers modifiersOf(std::int32_t shift) {
  return (shift & kShiftMask ? Qt::ShiftModifier : Qt::NoModifier) |
         (shift & kCtrlMask ? Qt::ControlModifier : Qt::NoModifier);
}

Qt::MouseButton buttonOf(std::int32_t button) {
  return button == kRightButton ? Qt::RightButton : Qt::LeftButton;
}

class QtTree final : public TreeUser {
 public:
  explicit QtTree(const qt::SiteServices& services) : site_(widget_, "FolderTreeView", true, services) {
    QObject::connect(&widget_, &qt::SiteWidget::resized, &widget_, [this] { fill(); });
    widget_.resize(240, 400);
    widget_.show();
    fill();
    widget_.activateWindow();
    QApplication::processEvents();
  }

  TreeView& tree() override { return Bind<TreeView>(site_, "tvwFolders"); }
  PictureBox& icon() override { return Bind<PictureBox>(site_, "picIcon"); }

  void press(const std::string& key, std::int32_t button, std::int32_t shift) override {
    pressed_ = middleOf(key);
    mouse(QEvent::MouseButtonPress, pressed_, buttonOf(button), shift);
  }
  void release(std::int32_t button, std::int32_t shift) override {
    mouse(QEvent::MouseButtonRelease, pressed_, buttonOf(button), shift);
  }
  void doubleClick(const std::string& key) override {
    const QPoint at = middleOf(key);
    mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, 0);
    mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, 0);
    mouse(QEvent::MouseButtonDblClick, at, Qt::LeftButton, 0);
    mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, 0);
  }
  void clickSign(const std::string& key) override {
    const QRect rect = view().visualRect(indexOf(key));
    clickAt({rect.left() - view().indentation() / 2, rect.center().y()});
  }
  void clickCheckBox(const std::string& key) override { clickAt(view().checkBoxOf(indexOf(key)).center()); }
  void clickBelowTheNodes(std::int32_t button) override {
    const QPoint at(100, view().viewport()->height() - 3);
    if (view().indexAt(at).isValid()) throw std::logic_error("The nodes fill the tree.");
    mouse(QEvent::MouseButtonPress, at, buttonOf(button), 0);
    mouse(QEvent::MouseButtonRelease, at, buttonOf(button), 0);
  }
  void pressKey(std::int32_t keyCode, std::int32_t shift) override {
    const bool isPad = keyCode >= 106 && keyCode <= 111;
    const QString text = isPad ? QString(QChar(static_cast<char16_t>(keyOf(keyCode)))) : QString();
    key(keyOf(keyCode), modifiersOf(shift) | (isPad ? Qt::KeypadModifier : Qt::NoModifier), text);
  }
  void typeLetter(char letter) override {
    key(static_cast<Qt::Key>(letter & ~0x20), Qt::NoModifier, QString(QLatin1Char(letter)));
  }
  Place placeOf(const std::string& key) override {
    const QPoint at = middleOf(key);
    return {static_cast<float>(at.x()), static_cast<float>(at.y())};
  }
  bool isShown(const std::string& key) override {
    for (QModelIndex above = indexOf(key).parent(); above.isValid(); above = above.parent()) {
      if (!view().isExpanded(above)) return false;
    }
    return true;
  }

 private:
  void fill() { tree().Move(0, 0, widget_.width(), widget_.height()); }
  qt::TreeWidget& view() { return dynamic_cast<qt::TreeWidget&>(*qt::widgetOf(tree().hWnd())); }
  QModelIndex indexOf(const std::string& key) {
    const auto& model = dynamic_cast<qt::TreeModel&>(*view().model());
    const qt::TreeItem* const item = model.find(key);
    if (!item) throw std::logic_error("There is no node \"" + key + "\".");
    return model.indexOf(*item);
  }
  QPoint middleOf(const std::string& key) { return view().visualRect(indexOf(key)).center(); }

  /// Sends the event to the widget at the place, as the window system does.
  void mouse(QEvent::Type type, const QPoint& at, Qt::MouseButton button, std::int32_t shift) {
    QWidget* const target = view().viewport();
    if (type == QEvent::MouseButtonPress) view().setFocus(Qt::MouseFocusReason);
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
    QMouseEvent event(type, QPointF(at), target->mapToGlobal(QPointF(at)), button, held, modifiersOf(shift));
    QApplication::sendEvent(target, &event);
    QApplication::processEvents();
  }
  void clickAt(const QPoint& at) {
    mouse(QEvent::MouseButtonPress, at, Qt::LeftButton, 0);
    mouse(QEvent::MouseButtonRelease, at, Qt::LeftButton, 0);
  }
  void key(Qt::Key key, Qt::KeyboardModifiers modifiers, const QString& text) {
    widget_.setFocus();
    QWidget* const focused = widget_.window()->focusWidget();
    if (!focused) throw std::logic_error("The tree does not take the focus.");
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
      QKeyEvent event(type, key, modifiers, text);
      QApplication::sendEvent(focused, &event);
      QApplication::processEvents();
    }
  }

  qt::FolderTreeWidget widget_;
  qt::QtSite site_;
  QPoint pressed_;
};

}  // namespace

std::unique_ptr<TreeUser> qtTreeUser(const qt::SiteServices& services) {
  return std::make_unique<QtTree>(services);
}

}  // namespace kestrel::contract
