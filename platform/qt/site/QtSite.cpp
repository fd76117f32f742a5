#include "QtSite.h"

#include "StoredProperties.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {

QtSite::QtSite(SiteWidget& widget, const std::string& name, bool userMode, const SiteServices& services)
    : WidgetControl(widget, {name, -1}), userMode_(userMode) {
  widget.populate(*this, services);
  const auto listen = [&](auto signal, auto raise) { QObject::connect(&widget, signal, receiver(), raise); };
  listen(&SiteWidget::resized, [this] { guarded([this] { Resize(); }); });
  listen(&SiteWidget::shown, [this] { guarded([this] { Show(); }); });
  listen(&SiteWidget::hidden, [this] { guarded([this] { Hide(); }); });
  listen(&SiteWidget::keyPressed, [this](int key, int shift) { guarded([&] { KeyDown(key, shift); }); });
  listen(&SiteWidget::characterTyped, [this](int& character) { guarded([&] { KeyPress(character); }); });
  listen(&SiteWidget::escapeQueried, [this](bool& used) { guarded([&] { QueryEscape(used); }); });
  listen(&SiteWidget::acceptsFilesChanged, [this] { guarded([this] { AcceptsFilesChanged(); }); });
  listen(&SiteWidget::fileDropQueried, [this](bool& taken) { guarded([&] { QueryFileDrop(taken); }); });
  listen(&SiteWidget::fileDropped, [this](const QString& file) { guarded([&] { FileDrop(fromQt(file)); }); });
  listen(&SiteWidget::keyReleased, [this](int key, int shift) { guarded([&] { KeyUp(key, shift); }); });
}

void QtSite::initialize() {
  const StoredProperties stored(widget());
  if (stored.any()) {
    ReadProperties(stored);
  } else {
    InitProperties();
  }
  Resize();
}

void QtSite::PropertyChanged(const std::string& name) {
  // The container may replace the function during the call.
  if (const auto notify = propertyChanged) notify(name);
}

void QtSite::TabStop(bool value) { widget().setFocusPolicy(value ? Qt::StrongFocus : Qt::ClickFocus); }

}  // namespace kestrel::qt
