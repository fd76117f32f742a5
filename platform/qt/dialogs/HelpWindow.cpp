#include "HelpWindow.h"

#include <QAction>
#include <QEvent>
#include <QFileInfo>
#include <QStyle>
#include <QToolBar>
#include <QUrl>

#include "../Text.h"
#include "../docking/SvgIcon.h"

namespace kestrel::qt {
namespace {

constexpr int kIconSize = 24;

/// Shows the program's own icons on its pages as the program itself does: sharp on any screen, in the
/// colours of the theme.
class HelpBrowser final : public QTextBrowser {
 public:
  QVariant loadResource(int type, const QUrl& name) override {
    const QFileInfo file(name.path());
    if (type == QTextDocument::ImageResource && file.suffix() == QLatin1String("svg")) {
      const QIcon icon = drawnIcon(fromQt(file.completeBaseName()));
      if (!icon.isNull()) return icon.pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF());
    }
    return QTextBrowser::loadResource(type, name);
  }

 protected:
  void changeEvent(QEvent* event) override {
    QTextBrowser::changeEvent(event);
    // The icons of the page were drawn for the theme before.
    if (event->type() == QEvent::PaletteChange && !source().isEmpty()) reload();
  }
};

}  // namespace

HelpWindow::HelpWindow() : browser_(new HelpBrowser) {
  setWindowTitle(translated("Help"));
  browser_->setOpenExternalLinks(true);
  browser_->setAccessibleName(translated("Help page"));
  browser_->document()->setDocumentMargin(16);
  setCentralWidget(browser_);

  auto* const bar = addToolBar(translated("Navigation"));
  bar->setMovable(false);
  bar->setContextMenuPolicy(Qt::PreventContextMenu);
  setContextMenuPolicy(Qt::NoContextMenu);

  QAction* const back = bar->addAction(style()->standardIcon(QStyle::SP_ArrowBack), translated("Back"));
  QAction* const forward =
      bar->addAction(style()->standardIcon(QStyle::SP_ArrowForward), translated("Forward"));
  back->setShortcut(QKeySequence::Back);
  forward->setShortcut(QKeySequence::Forward);
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(back, &QAction::triggered, browser_, &QTextBrowser::backward);
  connect(forward, &QAction::triggered, browser_, &QTextBrowser::forward);
  connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
  connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
  connect(browser_, &QTextBrowser::sourceChanged, this, [this] {
    const QString title = browser_->documentTitle();
    setWindowTitle(title.isEmpty() ? translated("Help") : title);
  });

  auto* const closing = new QAction(this);
  closing->setShortcut(Qt::Key_Escape);
  connect(closing, &QAction::triggered, this, &QWidget::close);
  addAction(closing);
  resize(900, 740);
}

void HelpWindow::showPage(const QString& folder, const QString& page) {
  browser_->setSearchPaths({folder});
  browser_->setSource(QUrl::fromLocalFile(folder + u'/' + page));
  show();
  raise();
  activateWindow();
}

}  // namespace kestrel::qt
