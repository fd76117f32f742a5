#pragma once

#include <QWidget>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "imaging/contract/Control.h"

namespace kestrel::engine {
class ClipboardPort;
}

namespace kestrel::qt {

/// The controls of a form or surface, found by name and index.
///
/// A widget's object name is the control's name. An element of a control array has the dynamic property
/// `index`, and its object name ends in "_" and that number, since object names are unique on a form.
class ControlTable {
 public:
  /// Takes up every widget below `root` that stands for a control, by its class. A widget without an object
  /// name stands for none.
  void addAll(QWidget& root, engine::ClipboardPort& clipboard);
  void add(std::unique_ptr<Control> control);
  void clear() { controls_.clear(); }

  /// Starts the sites of our own controls on the form; see `QtSite::initialise`.
  void initialiseSites();

  /// Null if there is none.
  Control* find(std::string_view name, std::int32_t index) const;
  /// The highest index of the control array, -1 if there is none.
  std::int32_t upperBound(std::string_view name) const;

 private:
  // Names are unique whatever their case.
  std::map<std::pair<std::string, std::int32_t>, std::unique_ptr<Control>> controls_;
};

}  // namespace kestrel::qt
