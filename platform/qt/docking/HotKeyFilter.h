#pragma once

#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QWidget>
#include <string>
#include <vector>

#include "platform/docking/MoorageModel.h"

class QKeyEvent;

namespace kestrel::qt {

/// Keys by which the desktop's programs usually run a command. Used unless the stored layout gives them to a
/// command.
struct DesktopKey {
  std::string command;
  QList<QKeySequence> keys;
};

/// Passes keys pressed in the control's own widgets, including its floating dock windows, to the suite before
/// the focused widget and the host's shortcuts get them; except keys that edit text. Keys of other widgets
/// are ignored. Keys sent to the window itself, because no widget in it has the focus, belong to a control
/// that fills the window.
class HotKeyFilter final : public QObject {
  Q_OBJECT

 public:
  /// `control` is the widget of the whole control, which contains the suite.
  HotKeyFilter(docking::MoorageModel& suite, const QWidget& control);

  /// Uses these keys too, and F10 for the menu bar.
  void useDesktopKeys(std::vector<DesktopKey> keys) { desktopKeys_ = std::move(keys); }

 Q_SIGNALS:
  void menuBarRequested();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  /// What a key does.
  struct Binding {
    bool hotKey = false;
    docking::CommandModel* command = nullptr;  ///< of a desktop key
    bool menuBar = false;
    bool any() const { return hotKey || command || menuBar; }
  };
  Binding bindingOf(const QKeyEvent& event) const;
  bool run(const Binding& binding, const QKeyEvent& event);
  bool isUsable() const;
  bool owns(const QWidget& widget) const;
  bool fillsItsWindow() const;

  docking::MoorageModel& suite_;
  const QWidget& control_;
  std::vector<DesktopKey> desktopKeys_;
};

}  // namespace kestrel::qt
