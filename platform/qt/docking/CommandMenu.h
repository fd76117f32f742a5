#pragma once

#include <QHash>
#include <QMenu>

namespace kestrel::qt {

/// A menu at most 40 em wide. Texts that don't fit are elided in the middle; their tool tip is the whole
/// text.
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

 private:
  int captionRoom() const;

  QHash<QAction*, QString> whole_;  ///< the texts of elided entries
};

}  // namespace kestrel::qt
