#include "ImageBrowser.h"

#include <QActionEvent>
#include <QVBoxLayout>

#include "browser/ImageBrowserCtl.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/dialogs/Modal.h"
#include "platform/qt/docking/QtMoorage.h"
#include "platform/qt/forms/BrowserWidget.h"
#include "platform/qt/site/QtSite.h"

namespace kestrel::qt {

/// The part that outlives calls of the control in progress when the host destroys the widget.
struct ImageBrowser::Inside {
  explicit Inside(const SiteServices& services)
      : calls(services.calls),
        widget(std::make_unique<BrowserWidget>()),
        site(*widget, "Browser", true, services),
        control(site) {}

  /// Detaches from the host: ends the control's events and closes its windows.
  void retire() {
    site.propertyChanged = nullptr;
    opened.Disconnect();
    control.Retire();
    closeWindowsOf(*widget);
    widget->setParent(nullptr);
  }

  OpenCalls& calls;
  std::unique_ptr<BrowserWidget> widget;
  QtSite site;
  ImageBrowserCtl control;
  Connection opened;
};

ImageBrowser::ImageBrowser(Component& component, const PropertyBag* stored, QWidget* parent)
    : QWidget(parent), component_(component), inside_(std::make_unique<Inside>(component.siteServices())) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(inside_->widget.get());
  setFocusProxy(inside_->widget.get());

  inside_->site.propertyChanged = [this](const std::string& name) { Q_EMIT propertyChanged(toQt(name)); };
  inside_->opened =
      inside_->control.ObjectThumbnailView().ThumbnailOpen.Connect([this](Thumbnail& thumbnail) {
        const OpenCalls::Call call(inside_->calls);
        Q_EMIT fileOpened(toQt(thumbnail.Filename()));
      });
  if (stored != nullptr) {
    inside_->site.ReadProperties(*stored);
  } else {
    inside_->site.InitProperties();
  }
}

ImageBrowser::~ImageBrowser() {
  inside_->retire();
  component_.platform().Retire(std::move(inside_));
}

IImageBrowserCtl& ImageBrowser::control() { return inside_->control; }

void ImageBrowser::save(PropertyBag& bag) { inside_->site.WriteProperties(bag); }

void ImageBrowser::actionEvent(QActionEvent* event) {
  // Null for actions that the destructor of the base removes.
  if (inside_ && event->type() == QEvent::ActionAdded) {
    inside_->widget->insertAction(event->before(), event->action());
  } else if (inside_ && event->type() == QEvent::ActionRemoved) {
    inside_->widget->removeAction(event->action());
  }
  QWidget::actionEvent(event);
}

}  // namespace kestrel::qt
