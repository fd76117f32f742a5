#pragma once

#include <QColor>
#include <QList>
#include <QMenu>

namespace kestrel::qt {

/// The list of colours that a colour picker opens: the extra choice, the palette, the colours that were
/// chosen last, and the way to the desktop's full colour dialog.
class ColorPalette final : public QMenu {
  Q_OBJECT

 public:
  using QMenu::QMenu;

  /// The extra choice is left out where its caption is empty. `chosen` is marked; it is invalid where the
  /// extra choice is the chosen one.
  void fill(const QColor& chosen, const QString& enhancedCaption);

  /// Puts a colour first among those that were chosen last.
  static void remember(const QColor& color);

 Q_SIGNALS:
  void colorChosen(const QColor& color);
  void enhancedChosen();
  void moreWanted();

 private:
  void addSwatches(const QList<QColor>& colors, const QColor& chosen);
};

}  // namespace kestrel::qt
