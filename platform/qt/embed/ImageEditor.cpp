#include "ImageEditor.h"

#include <QTimer>
#include <QVBoxLayout>
#include <chrono>

#include "editor/ImageProcessingCtl.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/dialogs/Modal.h"
#include "platform/qt/docking/QtMoorage.h"
#include "platform/qt/forms/EditorWidget.h"
#include "platform/qt/site/QtSite.h"
#include "recovery/Recovery.h"

namespace kestrel::qt {

/// The part that outlives calls of the control in progress when the host destroys the widget.
struct ImageEditor::Inside final : QObject {
  explicit Inside(const SiteServices& services)
      : widget(std::make_unique<EditorWidget>()), site(*widget, "Processing", true, services), control(site) {
    connect(&timer, &QTimer::timeout, this,
            [this] { guarded([this] { recovery->Tick(std::chrono::steady_clock::now()); }); });
  }

  /// Detaches from the host: ends the control's events and closes its windows.
  void retire() {
    keepChanges(nullptr);
    site.propertyChanged = nullptr;
    control.Retire();
    closeWindowsOf(*widget);
    widget->setParent(nullptr);
  }

  /// Null: no longer.
  void keepChanges(RecoveryStore* store) {
    timer.stop();
    if (recovery) recovery->End();
    if (store == nullptr) return;
    recovery = std::make_unique<Recovery>(control, *widget->moorage(), *store);
    recovery->Offer();
    timer.start(Recovery::kInterval);
  }

  std::unique_ptr<EditorWidget> widget;
  QtSite site;
  ImageProcessingCtl control;
  /// Kept after its end: it may be asking the user.
  std::unique_ptr<Recovery> recovery;
  QTimer timer;
};

ImageEditor::ImageEditor(Component& component, const PropertyBag* stored, QWidget* parent)
    : QWidget(parent), component_(component), inside_(std::make_unique<Inside>(component.siteServices())) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(inside_->widget.get());
  setFocusProxy(inside_->widget.get());

  inside_->site.propertyChanged = [this](const std::string& name) { Q_EMIT propertyChanged(toQt(name)); };
  if (stored != nullptr) {
    inside_->site.ReadProperties(*stored);
  } else {
    inside_->site.InitProperties();
  }
}

ImageEditor::~ImageEditor() {
  inside_->retire();
  component_.platform().Retire(std::move(inside_));
}

IImageProcessingCtl& ImageEditor::control() { return inside_->control; }

bool ImageEditor::acceptFiles() const { return inside_->widget->acceptDrops(); }

void ImageEditor::setAcceptFiles(bool value) { inside_->widget->acceptFiles(value); }

bool ImageEditor::keepsChanges() const { return inside_->timer.isActive(); }

void ImageEditor::setKeepsChanges(bool value) {
  if (value != keepsChanges()) inside_->keepChanges(value ? component_.recoveryStore() : nullptr);
}

void ImageEditor::save(PropertyBag& bag) { inside_->site.WriteProperties(bag); }

}  // namespace kestrel::qt
