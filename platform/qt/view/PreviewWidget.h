#pragma once

#include "imaging/contract/Site.h"
#include "platform/qt/site/SiteWidget.h"

namespace kestrel::qt {

/// The window of a preview: the image views "igxOriginal" and "igxPreview", which the control's logic lays
/// out, and the picture "imgPreview" that they show where there is none of the user's.
class PreviewWidget final : public SiteWidget {
  Q_OBJECT

 public:
  using SiteWidget::SiteWidget;

  void furnish(QtSite& site, engine::ClipboardPort& clipboard) override;
  QSize sizeHint() const override { return {kPreviewDesignSize.Width, kPreviewDesignSize.Height}; }
  QSize minimumSizeHint() const override { return {240, 120}; }
};

}  // namespace kestrel::qt
