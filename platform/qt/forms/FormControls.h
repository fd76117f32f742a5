#pragma once

#include <QWidget>
#include <cstdint>
#include <string_view>

#include "platform/qt/controls/ControlTable.h"

namespace kestrel::qt {

struct SiteServices;

/// The controls of a form: those on the toolkit's widgets, and our own, which have sites.
class FormControls {
 public:
  /// Adds a control for each widget below `root` with an object name and a known class.
  void addAll(QWidget& root, const SiteServices& services);
  void clear() { controls_.clear(); }

  /// Initializes the sites of our own controls on the form; see `QtSite::initialize`.
  void initializeSites();

  /// Null if there is none.
  Control* find(std::string_view name, std::int32_t index) const { return controls_.find(name, index); }
  /// The highest index of the control array, -1 if there is none.
  std::int32_t upperBound(std::string_view name) const { return controls_.upperBound(name); }

 private:
  ControlTable controls_;
};

}  // namespace kestrel::qt
