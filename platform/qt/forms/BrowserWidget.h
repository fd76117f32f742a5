#pragma once

#include "platform/qt/site/QtSite.h"
#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {

class MoorageWindow;
class QtMoorage;
class QtThumbnailView;
class SplitPanelWidget;

/// The widget of an image browser, for a host's window: the docking suite "mrgUI", the split panel
/// "pnlBrowse", the folder tree "ftvBrowse" and the thumbnail view "thvBrowse". The widget's own actions are
/// shown last in the context menu of thumbnails. In a window of its own, which a form marks by the property
/// `DesktopKeys`, it also has the desktop's usual keys; those of another window belong to the host.
class BrowserWidget final : public SiteWidget {
  Q_OBJECT

 public:
  using SiteWidget::SiteWidget;

  /// Raises RuntimeError 321 for a damaged stored layout.
  void populate(QtSite& site, const SiteServices& services) override;
  void closeMenus() override;

  /// Null before `populate`.
  QtMoorage* moorage() const { return moorage_; }
  QtThumbnailView* thumbnails() const { return thumbnails_; }

  QSize sizeHint() const override { return {1100, 760}; }
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;

 private:
  MoorageWindow* bars_ = nullptr;
  SplitPanelWidget* panel_ = nullptr;
  // Owned by the site
  QtMoorage* moorage_ = nullptr;
  QtThumbnailView* thumbnails_ = nullptr;
};

}  // namespace kestrel::qt
