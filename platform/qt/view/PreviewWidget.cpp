#include "PreviewWidget.h"

#include <QImage>

#include "QtImageView.h"
#include "Resources/StockPicture.h"
#include "platform/qt/controls/DisplayControls.h"
#include "platform/qt/core/Pictures.h"
#include "platform/qt/site/QtSite.h"

namespace kestrel::qt {

void PreviewWidget::populate(QtSite& site, engine::ClipboardPort& clipboard) {
  for (const char* name : {"igxOriginal", "igxPreview"}) {
    auto* const surface = new ImageSurface(this);
    surface->canvas().setFocusPolicy(Qt::ClickFocus);
    site.add(std::make_unique<QtImageView>(*surface, ControlId{name}, clipboard));
  }

  auto* const stock = new PictureWidget(this);
  stock->hide();
  const auto file = resources::stockPicture();
  const QImage picture =
      QImage::fromData(reinterpret_cast<const uchar*>(file.data()), static_cast<int>(file.size()));
  stock->setPicture(std::make_shared<ImagePicture>(picture));
  site.add(std::make_unique<PictureBoxControl>(*stock, ControlId{"imgPreview"}));
}

}  // namespace kestrel::qt
