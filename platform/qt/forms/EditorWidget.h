#pragma once

#include "platform/qt/site/QtSite.h"
#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {

class QtImageView;
class QtMoorage;

/// The window of an image editor, for a host to put into a window of its own: the docking suite "mrgUI" and
/// the image view "igxImage".
class EditorWidget final : public SiteWidget {
  Q_OBJECT

 public:
  using SiteWidget::SiteWidget;

  /// Raises RuntimeError 321 for a damaged stored layout.
  void furnish(QtSite& site, engine::ClipboardPort& clipboard) override;

  /// Null before it is furnished.
  QtSite* site() const { return site_; }
  QtMoorage* moorage() const { return moorage_; }
  QtImageView* view() const { return view_; }

  QSize sizeHint() const override { return {1100, 760}; }

 private:
  QtSite* site_ = nullptr;
  // The site's.
  QtMoorage* moorage_ = nullptr;
  QtImageView* view_ = nullptr;
};

}  // namespace kestrel::qt
