#include "FolderTreeWidget.h"

#include <QFontMetrics>
#include <memory>
#include <utility>

#include "FolderTreeFiles.h"
#include "QtFolderNotices.h"
#include "QtTreeView.h"
#include "imaging/contract/FolderTreeImages.h"
#include "platform/qt/controls/DisplayControls.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/SvgIcon.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/site/QtSite.h"

namespace kestrel::qt {
namespace {

/// The pictures that the tree starts with: the key, the name in the desktop's theme and in our own set.
struct StockIcon {
  const char* key;
  const char* theme;
  const char* own;
};
constexpr StockIcon kStockIcons[] = {
    {folder_tree_images::kMyComputer, "computer", "computer"},
    {folder_tree_images::kDesktop, "user-desktop", "desktop"},
    {folder_tree_images::kFolderClosed, "folder", "folder"},
    {folder_tree_images::kFolderOpen, "folder-open", "folder-open"},
    {folder_tree_images::kMyDocuments, "folder-documents", "documents"},
};

constexpr int kWidthInCharacters = 32;
constexpr int kHeightInLines = 20;

}  // namespace

void FolderTreeWidget::populate(QtSite& site, const SiteServices& services) {
  auto* const tree = new TreeWidget(this);
  keepTranslated(*tree, *tree, [tree] { tree->setAccessibleName(translated("Folders")); });
  new FolderTreeFiles(*tree, services);
  auto view = std::make_unique<QtTreeView>(*tree, ControlId{"tvwFolders"});
  for (const StockIcon& stock : kStockIcons) {
    view->ImageList().set(stock.key, QIcon::fromTheme(QLatin1String(stock.theme), svgIcon(stock.own)));
  }
  site.add(std::move(view));
  setFocusProxy(tree);

  auto* const icon = new PictureWidget(this);
  icon->hide();
  site.add(std::make_unique<PictureBoxControl>(*icon, ControlId{"picIcon"}));

  auto* const notices = new QWidget(this);
  notices->hide();
  site.add(std::make_unique<QtFolderNotices>(*notices, ControlId{"fnoFolders"}));
}

QSize FolderTreeWidget::sizeHint() const {
  const QFontMetrics metrics(font());
  return {kWidthInCharacters * metrics.averageCharWidth(), kHeightInLines * metrics.height()};
}

}  // namespace kestrel::qt
