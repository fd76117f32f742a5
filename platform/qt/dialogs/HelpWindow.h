#pragma once

#include <QMainWindow>
#include <QTextBrowser>
#include <QUrl>

namespace kestrel::qt {

/// Shows the pages of one help book, with buttons for back, forward and the contents, the page
/// "default.html".
class HelpWindow final : public QMainWindow {
  Q_OBJECT

 public:
  HelpWindow();

  /// Shows a page of the folder; links within the folder open here, others in the user's browser.
  void showPage(const QString& folder, const QString& page);

  const QTextBrowser& browser() const { return *browser_; }

 private:
  void showTitle();

  QTextBrowser* browser_;
  QUrl contents_;
};

}  // namespace kestrel::qt
