#pragma once

#include "platform/qt/site/QtSite.h"
#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {

class MoorageWindow;
class QtImageView;
class QtMoorage;

/// The widget of an image editor, for a host's window: the docking suite "mrgUI" and the image view
/// "igxImage". In a window of its own, which a form marks by the property `DesktopKeys`, it also has the
/// desktop's usual keys; those of another window belong to the host.
class EditorWidget final : public SiteWidget {
  Q_OBJECT

 public:
  using SiteWidget::SiteWidget;

  /// Raises RuntimeError 321 for a damaged stored layout.
  void populate(QtSite& site, const SiteServices& services) override;
  void closeMenus() override;

  /// Null before `populate`.
  QtSite* site() const { return site_; }
  QtMoorage* moorage() const { return moorage_; }
  QtImageView* view() const { return view_; }

  QSize sizeHint() const override { return {1100, 760}; }
  /// The smallest size at which bars, dock windows and picture do not overlap.
  QSize minimumSizeHint() const override;

 private:
  QtSite* site_ = nullptr;
  MoorageWindow* bars_ = nullptr;
  // Owned by the site
  QtMoorage* moorage_ = nullptr;
  QtImageView* view_ = nullptr;
};

}  // namespace kestrel::qt
