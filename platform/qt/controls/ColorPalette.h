#pragma once

#include <QColor>
#include <QList>
#include <QMenu>

namespace kestrel::qt {

/// The menu of a color picker: the extra choice, the palette, the recent colors, and a command for the
/// desktop's full color dialog.
class ColorPalette final : public QMenu {
  Q_OBJECT

 public:
  using QMenu::QMenu;

  /// Fills the menu, without the extra choice if its caption is empty. `chosen` is marked; it is invalid if
  /// the extra choice is selected.
  void fill(const QColor& chosen, const QString& enhancedCaption);

  /// Gives the keyboard focus to the chosen color, or to the extra choice; call it when the menu is shown.
  /// The arrow keys move among the colors and the entries, Return and Space choose.
  void focusChosen();

  /// Adds a color at the front of the recent colors.
  static void remember(const QColor& color);

 Q_SIGNALS:
  void colorChosen(const QColor& color);
  void enhancedChosen();
  void moreWanted();

 private:
  void addSwatches(const QList<QColor>& colors, const QColor& chosen);

  QAction* start_ = nullptr;
};

}  // namespace kestrel::qt
