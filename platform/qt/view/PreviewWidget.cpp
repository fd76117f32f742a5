#include "PreviewWidget.h"

#include <QImage>
#include <utility>

#include "QtImageView.h"
#include "Resources/StockPicture.h"
#include "platform/qt/controls/DisplayControls.h"
#include "platform/qt/core/Language.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/site/QtSite.h"

namespace kestrel::qt {
namespace {

/// The stock picture in logical pixels, so that it looks the same at each scale of the screen.
constexpr QSize kStockSize{200, 150};
/// Enough for the gap between the panes.
constexpr int kBetweenPanes = 16;

constexpr char kPaneToolTip[] =
    "Ctrl+wheel zooms both pictures. A double click fits them into view, or shows them at actual size.";

QImage stockPicture(double scale) {
  const auto file = resources::stockPicture();
  const QImage stored =
      QImage::fromData(reinterpret_cast<const uchar*>(file.data()), static_cast<int>(file.size()));
  return stored.scaled(kStockSize * scale, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

void PreviewWidget::populate(QtSite& site, const SiteServices& services) {
  for (const auto& [name, accessibleName] : {std::pair{"igxOriginal", "Before"}, {"igxPreview", "After"}}) {
    auto* const surface = new ImageSurface(this);
    surface->canvas().setFocusPolicy(Qt::ClickFocus);
    ViewCanvas& canvas = surface->canvas();
    const char* const paneName = accessibleName;
    keepTranslated(canvas, canvas, [&canvas, paneName] {
      canvas.setAccessibleName(translated(paneName));
      canvas.setToolTip(translated(kPaneToolTip));
    });
    auto view = std::make_unique<QtImageView>(*surface, ControlId{name}, services.clipboard);
    // Nobody can undo in a pane, and each step would keep a whole picture.
    view->UndoLevels(0);
    site.add(std::move(view));
  }

  auto* const stock = new PictureWidget(this);
  stock->hide();
  stock->setPicture(std::make_shared<ImagePicture>(stockPicture(devicePixelRatioF())));
  site.add(std::make_unique<PictureBoxControl>(*stock, ControlId{"imgPreview"}));
}

QSize PreviewWidget::minimumSizeHint() const {
  return {2 * kStockSize.width() + kBetweenPanes, kStockSize.height()};
}

QSize PreviewWidget::sizeHint() const {
  return QSize(kPreviewDesignSize.Width, kPreviewDesignSize.Height).expandedTo(minimumSizeHint());
}

}  // namespace kestrel::qt
