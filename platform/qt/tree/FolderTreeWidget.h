#pragma once

#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {

/// The widget of a folder tree: the tree "tvwFolders", the picture "picIcon", on which icons are drawn, and
/// the notices "fnoFolders".
class FolderTreeWidget final : public SiteWidget {
  Q_OBJECT

 public:
  using SiteWidget::SiteWidget;

  void populate(QtSite& site, const SiteServices& services) override;
  QSize sizeHint() const override;
};

}  // namespace kestrel::qt
