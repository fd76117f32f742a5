#include "ImageEditor.h"

#include <QVBoxLayout>

#include "../Text.h"
#include "../site/EditorWidget.h"
#include "../site/QtSite.h"

namespace kestrel::qt {

struct ImageEditor::Inside {
  Inside(EditorWidget& widget, engine::ClipboardPort& clipboard)
      : site(widget, "Processing", true, clipboard), control(site) {}

  QtSite site;
  ImageProcessingCtl control;
};

ImageEditor::ImageEditor(Component& component, const PropertyBag* stored, QWidget* parent) : QWidget(parent) {
  auto* const widget = new EditorWidget(this);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(widget);
  setFocusProxy(widget);

  inside_ = std::make_unique<Inside>(*widget, component.clipboardPort());
  inside_->site.propertyChanged = [this](const std::string& name) { Q_EMIT propertyChanged(toQt(name)); };
  if (stored != nullptr) {
    inside_->site.ReadProperties(*stored);
  } else {
    inside_->site.InitProperties();
  }
}

ImageEditor::~ImageEditor() = default;

ImageProcessingCtl& ImageEditor::control() { return inside_->control; }

void ImageEditor::save(PropertyBag& bag) { inside_->site.WriteProperties(bag); }

}  // namespace kestrel::qt
