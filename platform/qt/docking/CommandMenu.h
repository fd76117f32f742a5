#pragma once

#include <QHash>
#include <QMenu>

namespace kestrel::qt {

/// A menu at most 40 em wide. Texts that don't fit are elided in the middle; their tool tip is the whole
/// text. Icons contrast with what the menu paints behind them: the toolkit's styles ask an icon for the same
/// mode in a highlighted entry, which has the color of a selection, and in a tool button under the pointer,
/// which has not; so the menu chooses the colors.
class CommandMenu final : public QMenu {
  Q_OBJECT

 public:
  using QMenu::QMenu;

  /// Adds an entry with that text, in which an "&" marks no access key.
  QAction* addLine(const QString& text);
  /// Elides texts that don't fit. Call when the menu is filled, before it is shown.
  void elide();

 protected:
  bool event(QEvent* event) override;
  void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override;

 private:
  int captionRoom() const;

  QHash<QAction*, QString> whole_;  ///< the texts of elided entries
};

}  // namespace kestrel::qt
