#include "ImageBrowser.h"

#include <QActionEvent>
#include <QVBoxLayout>
#include <utility>
#include <vector>

#include "browser/ImageBrowserCtl.h"
#include "diagnostics/ErrorListener.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/dialogs/Modal.h"
#include "platform/qt/docking/QtMoorage.h"
#include "platform/qt/forms/BrowserWidget.h"
#include "platform/qt/site/QtSite.h"

namespace kestrel::qt {

/// The part that outlives calls of the control in progress when the host destroys the widget.
struct ImageBrowser::Inside {
  Inside(const SiteServices& services, Mode mode)
      : calls(services.calls),
        widget(std::make_unique<BrowserWidget>()),
        site(*widget, "Browser", mode == Mode::kRunning, services),
        control(site) {}

  /// Detaches from the host: ends the control's events and closes its windows.
  void retire() {
    site.propertyChanged = nullptr;
    events.clear();
    control.Retire();
    closeWindowsOf(*widget);
    widget->setParent(nullptr);
  }

  OpenCalls& calls;
  std::unique_ptr<BrowserWidget> widget;
  QtSite site;
  ImageBrowserCtl control;
  std::vector<Connection> events;
};

ImageBrowser::ImageBrowser(Component& component, const PropertyBag* stored, QWidget* parent)
    : QWidget(parent),
      component_(component),
      inside_(std::make_unique<Inside>(component.siteServices(), Mode::kRunning)) {
  start(stored);
}

ImageBrowser::ImageBrowser(QWidget* parent, Mode mode)
    : QWidget(parent),
      own_(std::in_place),
      component_(*own_),
      inside_(std::make_unique<Inside>(component_.siteServices(), mode)) {
  start(nullptr);
}

void ImageBrowser::start(const PropertyBag* stored) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(inside_->widget.get());
  setFocusProxy(inside_->widget.get());
  setFocusPolicy(Qt::TabFocus);  // an MDI sub-window gives the focus to a widget that takes it

  inside_->site.propertyChanged = [this](const std::string& name) { Q_EMIT propertyChanged(toQt(name)); };
  ImageBrowserCtl& control = inside_->control;
  const auto keep = [this](Connection connection) { inside_->events.push_back(std::move(connection)); };
  keep(control.ObjectThumbnailView().ThumbnailOpen.Connect([this](Thumbnail& thumbnail) {
    CallHost(inside_->calls, [&] { Q_EMIT fileOpened(toQt(thumbnail.Filename())); });
  }));
  keep(control.PathChange.Connect([this](const std::string& path) { Q_EMIT pathChanged(toQt(path)); }));
  keep(control.ExitRequest.Connect([this] { Q_EMIT exitRequested(); }));
  keep(control.InvalidPathChange.Connect([this] { Q_EMIT invalidPathChanged(); }));
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

bool ImageBrowser::showMenuBar() const { return inside_->control.ShowMenuBar(); }

void ImageBrowser::setShowMenuBar(bool value) { inside_->control.ShowMenuBar(value); }

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
