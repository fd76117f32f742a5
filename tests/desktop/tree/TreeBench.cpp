#include "TreeBench.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "browser/modFolderTreeView.h"
#include "platform/os/Paths.h"
#include "platform/posix/LineTable.h"
#include "platform/posix/SharedLibraryFactory.h"
#include "platform/qt/core/Handles.h"
#include "platform/store/MemoryStore.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

std::unique_ptr<qt::QtPlatform> makePlatform(const QString& helpFolder) {
  qt::DesktopParts parts;
  parts.version = {"Tree", 1, 0, 0};
  auto store = std::make_unique<store::MemoryStore>();
  parts.objectFactory = std::make_unique<posix::SharedLibraryFactory>(*store);
  parts.store = std::move(store);
  parts.stackResolver = std::make_unique<posix::LineTable>();
  parts.helpFolder = helpFolder.toStdString();
  return std::make_unique<qt::QtPlatform>(std::move(parts));
}

}  // namespace

TreeBench::TreeBench() : homeBefore_(qgetenv("HOME")), configBefore_(qgetenv("XDG_CONFIG_HOME")) {
  qputenv("HOME", home_.path().toUtf8());
  qputenv("XDG_CONFIG_HOME", home_.filePath(QStringLiteral(".config")).toUtf8());
  folder(".config");
  std::ofstream(home(".config/user-dirs.dirs")) << "XDG_DESKTOP_DIR=\"$HOME/Desktop\"\n"
                                                   "XDG_DOCUMENTS_DIR=\"$HOME/Documents\"\n";
  folder("Desktop");
  folder("Documents");
  platform_ = makePlatform(home_.path());
  modProcessing::Attach(*platform_);
  modProcessing::Main();
}

TreeBench::~TreeBench() {
  control_.reset();
  site_.reset();
  widget_.reset();
  modProcessing::Detach();
  platform_.reset();
  // The toolkit can't remove files whose names are not valid UTF-8.
  std::error_code remains;
  std::filesystem::remove_all(os::pathOf(home()), remains);
  qputenv("HOME", homeBefore_);
  if (configBefore_.isNull()) {
    qunsetenv("XDG_CONFIG_HOME");
  } else {
    qputenv("XDG_CONFIG_HOME", configBefore_);
  }
}

std::string TreeBench::home(const std::string& name) const {
  const std::string real = QDir(home_.path()).canonicalPath().toStdString();
  return name.empty() ? real : real + "/" + name;
}

void TreeBench::folder(const std::string& name) const {
  std::filesystem::create_directories(os::pathOf(home(name)));
}

void TreeBench::start() {
  widget_ = std::make_unique<qt::FolderTreeWidget>();
  site_ = std::make_unique<qt::QtSite>(*widget_, "FolderTreeView", true, platform_->siteServices());
  control_ = std::make_unique<FolderTreeView>(*site_);
  widget_->resize(300, 500);
  site_->initialize();
  widget_->show();
  widget_->activateWindow();
  QApplication::processEvents();
}

qt::TreeWidget& TreeBench::view() { return dynamic_cast<qt::TreeWidget&>(*qt::widgetOf(control_->hWnd())); }

QModelIndex TreeBench::indexOf(const std::string& key) {
  const qt::TreeItem* const item = model().find(key);
  if (!item) throw std::logic_error("There is no node \"" + key + "\".");
  return model().indexOf(*item);
}

TreeNode& TreeBench::nodeOf(const std::string& path) {
  TreeNode* const node = modFolderTreeView::FindFolder(tree(), path);
  if (!node) throw std::logic_error("The folder \"" + path + "\" is not listed.");
  return *node;
}

std::vector<std::string> TreeBench::childTexts(TreeNode& node) {
  std::vector<std::string> texts;
  const QModelIndex parent = indexOf(node.Key());
  for (int row = 0; row < model().rowCount(parent); ++row) {
    texts.push_back(qt::TreeModel::itemOf(model().index(row, 0, parent))->Text());
  }
  return texts;
}

void TreeBench::click(const std::string& key) {
  // At the beginning of the text: its middle may be scrolled out of the view.
  const QRect rect = view().visualRect(indexOf(key));
  QTest::mouseClick(view().viewport(), Qt::LeftButton, Qt::NoModifier,
                    {rect.left() + rect.height(), rect.center().y()});
}

void TreeBench::clickSign(const std::string& key) {
  const QRect rect = view().visualRect(indexOf(key));
  QTest::mouseClick(view().viewport(), Qt::LeftButton, Qt::NoModifier,
                    {rect.left() - view().indentation() / 2, rect.center().y()});
}

void TreeBench::press(Qt::Key key, const QString& text) {
  QWidget* const focused = widget_->window()->focusWidget();
  if (!focused) throw std::logic_error("No widget of the window has the focus.");
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, Qt::NoModifier, text);
    QApplication::sendEvent(focused, &event);
  }
}

}  // namespace kestrel::desktop
