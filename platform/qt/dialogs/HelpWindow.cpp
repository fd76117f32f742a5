#include "HelpWindow.h"

#include <QAction>
#include <QEvent>
#include <QFileInfo>
#include <QImage>
#include <QScrollBar>
#include <QToolBar>
#include <QUrl>

#include "platform/qt/core/Caption.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/SvgIcon.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

constexpr int kIconSize = 24;

/// Renders the program's icons on the pages as the program does: sharp at any scale, in the colors of the
/// theme. Scales pictures down to the page's width.
class HelpBrowser final : public QTextBrowser {
 public:
  QVariant loadResource(int type, const QUrl& name) override {
    const QFileInfo file(name.path());
    if (type == QTextDocument::ImageResource && file.suffix() == QLatin1String("svg")) {
      const QIcon icon = svgIcon(fromQt(file.completeBaseName()));
      if (!icon.isNull()) return icon.pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF());
    }
    const QVariant resource = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource) return resource;
    QImage picture;
    if (!picture.loadFromData(resource.toByteArray())) return resource;
    const int margins = 2 * (frameWidth() + qRound(document()->documentMargin()));
    const int room = width() - margins - verticalScrollBar()->sizeHint().width();
    return picture.width() > room ? picture.scaledToWidth(room, Qt::SmoothTransformation) : picture;
  }

 protected:
  void changeEvent(QEvent* event) override {
    QTextBrowser::changeEvent(event);
    // The page's icons have the colors of the previous theme.
    if (event->type() == QEvent::PaletteChange && !source().isEmpty()) reload();
  }
};

}  // namespace

HelpWindow::HelpWindow() : browser_(new HelpBrowser) {
  browser_->setOpenExternalLinks(true);
  browser_->document()->setDocumentMargin(16);
  setCentralWidget(browser_);

  auto* const bar = addToolBar(QString());
  bar->setMovable(false);
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  bar->setContextMenuPolicy(Qt::PreventContextMenu);
  setContextMenuPolicy(Qt::NoContextMenu);

  QAction* const back = bar->addAction(svgIcon("Go-Back"), QString());
  QAction* const forward = bar->addAction(svgIcon("Go-Forward"), QString());
  QAction* const contents = bar->addAction(svgIcon("Contents"), QString());
  keepTranslated(*this, *this, [this, bar, back, forward, contents] {
    showTitle();
    browser_->setAccessibleName(translated("Help page"));
    bar->setWindowTitle(translated("Navigation"));
    back->setText(translated("Back"));
    forward->setText(translated("Forward"));
    contents->setText(translated("Contents"));
  });
  back->setShortcut(QKeySequence::Back);
  forward->setShortcut(QKeySequence::Forward);
  back->setEnabled(false);
  forward->setEnabled(false);
  connect(back, &QAction::triggered, browser_, &QTextBrowser::backward);
  connect(forward, &QAction::triggered, browser_, &QTextBrowser::forward);
  contents->setShortcut(Qt::ALT | Qt::Key_Home);
  connect(contents, &QAction::triggered, this, [this] { browser_->setSource(contents_); });
  connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
  connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
  connect(browser_, &QTextBrowser::sourceChanged, this, &HelpWindow::showTitle);

  auto* const closing = new QAction(this);
  closing->setShortcut(Qt::Key_Escape);
  connect(closing, &QAction::triggered, this, &QWidget::close);
  addAction(closing);
  resize(900, 740);
}

void HelpWindow::showTitle() {
  const QString title = browser_->documentTitle();
  setCaption(*this, title.isEmpty() ? translated("Help") : title);
}

void HelpWindow::showPage(const QString& folder, const QString& page) {
  browser_->setSearchPaths({folder});
  contents_ = QUrl::fromLocalFile(folder + u'/' + QStringLiteral("default.html"));
  show();  // show first: the page width limits the pictures
  browser_->setSource(QUrl::fromLocalFile(folder + u'/' + page));
  raise();
  activateWindow();
}

}  // namespace kestrel::qt
