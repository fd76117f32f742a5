#include "PictureAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLocale>

#include "ViewCanvas.h"
#include "engine/view/View.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

/// "300 x 200 pixels, shown at 50%, selection 20 x 10 pixels"; empty without a picture.
QString descriptionOf(engine::View& view) {
  const Image* const image = view.Image();
  if (!image || image->Width() <= 0 || image->Height() <= 0) return translated(view.shownHint());
  constexpr int kPercent = 100;
  const QLocale locale = QLocale::system();
  QString text = translated("%1 \u00D7 %2 pixels, shown at %3%")
                     .arg(locale.toString(image->Width()), locale.toString(image->Height()),
                          locale.toString(qRound(view.Zoom() * kPercent)));
  if (view.SelectionVisible()) {
    text += QStringLiteral(", ") +
            translated("selection of %1 \u00D7 %2 pixels")
                .arg(locale.toString(view.SelectionWidth()), locale.toString(view.SelectionHeight()));
  }
  return text;
}

class AccessiblePicture final : public QAccessibleWidget, public QAccessibleImageInterface {
 public:
  explicit AccessiblePicture(ViewCanvas& canvas) : QAccessibleWidget(&canvas, QAccessible::Graphic) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ImageInterface ? static_cast<QAccessibleImageInterface*>(this)
                                               : QAccessibleWidget::interface_cast(type);
  }

  QString text(QAccessible::Text which) const override {
    const bool ofPicture = which == QAccessible::Description && canvas().view();
    return ofPicture ? descriptionOf(*canvas().view()) : QAccessibleWidget::text(which);
  }

  QString imageDescription() const override { return text(QAccessible::Description); }
  QSize imageSize() const override { return rect().size(); }
  QPoint imagePosition() const override { return rect().topLeft(); }

 private:
  ViewCanvas& canvas() const { return *static_cast<ViewCanvas*>(widget()); }
};

QAccessibleInterface* accessibleOf(const QString& /*className*/, QObject* object) {
  auto* const canvas = qobject_cast<ViewCanvas*>(object);
  return canvas ? new AccessiblePicture(*canvas) : nullptr;
}

}  // namespace

void useAccessiblePictures() {
  // The toolkit keeps each factory once.
  QAccessible::installFactory(&accessibleOf);
}

}  // namespace kestrel::qt
