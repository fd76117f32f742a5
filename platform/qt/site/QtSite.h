#pragma once

#include <functional>
#include <memory>
#include <string>

#include "SiteServices.h"
#include "SiteWidget.h"
#include "imaging/contract/Site.h"
#include "platform/qt/controls/ControlTable.h"
#include "platform/qt/controls/WidgetControl.h"

namespace kestrel::qt {

/// The site of one of our controls on the desktop.
class QtSite final : public WidgetControl<Site> {
 public:
  /// Populates the widget, which outlives the site. The services must outlive both.
  QtSite(SiteWidget& widget, const std::string& name, bool userMode, const SiteServices& services);

  /// Raises `ReadProperties` if the form stores properties for the control, otherwise `InitProperties`; then
  /// `Resize`.
  void initialize();

  void add(std::unique_ptr<Control> control) { controls_.add(std::move(control)); }

  Control* Find(std::string_view name, std::int32_t index) override { return controls_.find(name, index); }
  std::int32_t UBound(std::string_view name) const override { return controls_.upperBound(name); }
  bool UserMode() const override { return userMode_; }
  void PropertyChanged(const std::string& name) override;
  void Refresh() override { widget().update(); }
  void TabStop(bool value) override;
  bool AcceptsFiles() const override { return widget().acceptDrops(); }
  std::int32_t ScaleWidth() const override { return widget().width(); }
  std::int32_t ScaleHeight() const override { return widget().height(); }

  /// Called with each property that the container should store again.
  std::function<void(const std::string&)> propertyChanged;

 private:
  ControlTable controls_;
  bool userMode_;
};

}  // namespace kestrel::qt
