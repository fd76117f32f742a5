#pragma once

#include <QPersistentModelIndex>
#include <QString>
#include <QTemporaryDir>
#include <memory>
#include <string>
#include <vector>

#include "browser/FolderTreeView.h"
#include "imaging/contract/FolderNotices.h"
#include "platform/qt/app/QtPlatform.h"
#include "platform/qt/site/QtSite.h"
#include "platform/qt/tree/FolderTreeWidget.h"
#include "platform/qt/tree/TreeModel.h"
#include "platform/qt/tree/TreeWidget.h"

namespace kestrel::desktop {

/// A user with a home folder of its own, and a folder tree in a window on the desktop.
class TreeBench {
 public:
  TreeBench();
  ~TreeBench();

  /// The path of a folder in the user's home.
  std::string home(const std::string& name = {}) const;
  /// Makes a folder in the home, with those above it; the name may have any bytes.
  void folder(const std::string& name) const;
  /// Shows the tree in a window of 300 by 500 pixels.
  void start();

  FolderTreeView& control() { return *control_; }
  qt::QtPlatform& platform() { return *platform_; }
  qt::FolderTreeWidget& widget() { return *widget_; }
  TreeView& tree() { return Bind<TreeView>(*site_, "tvwFolders"); }
  FolderNotices& notices() { return Bind<FolderNotices>(*site_, "fnoFolders"); }
  qt::TreeWidget& view();
  qt::TreeModel& model() { return dynamic_cast<qt::TreeModel&>(*view().model()); }
  /// The item of a node; its parents must be expanded.
  QModelIndex indexOf(const std::string& key);
  /// The node of a folder. Fails the test if it is not listed.
  TreeNode& nodeOf(const std::string& path);
  std::vector<std::string> childTexts(TreeNode& node);

  // The user.
  void click(const std::string& key);
  void clickSign(const std::string& key);
  void press(Qt::Key key, const QString& text = {});

 private:
  QTemporaryDir home_;
  QByteArray homeBefore_;
  QByteArray configBefore_;
  std::unique_ptr<qt::QtPlatform> platform_;
  std::unique_ptr<qt::FolderTreeWidget> widget_;
  std::unique_ptr<qt::QtSite> site_;
  std::unique_ptr<FolderTreeView> control_;
};

}  // namespace kestrel::desktop
