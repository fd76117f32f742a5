#pragma once

#include "imaging/contract/Site.h"
#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {

/// The widget of a preview: the image views "igxOriginal" and "igxPreview", which the control's logic lays
/// out, and the stock picture "imgPreview".
class PreviewWidget final : public SiteWidget {
  Q_OBJECT

 public:
  using SiteWidget::SiteWidget;

  void populate(QtSite& site, const SiteServices& services) override;
  QSize sizeHint() const override;
  /// The stock picture fits into the smallest panes without scroll bars.
  QSize minimumSizeHint() const override;
};

}  // namespace kestrel::qt
