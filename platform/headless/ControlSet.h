#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "FormDescription.h"
#include "Window.h"
#include "imaging/contract/Control.h"

namespace kestrel::headless {

class Site;
struct Surroundings;

/// The controls of a form or of a control's surface, found by name (ignoring case) and index.
class ControlSet {
 public:
  /// Makes the described controls, with their stored values, inside the window.
  void build(Window& container, const std::vector<ControlDescription>& descriptions,
             const Surroundings& surroundings);
  void add(std::unique_ptr<Window> window);

  /// Null if there is none.
  Control* find(std::string_view name, std::int32_t index) const;
  /// Initializes our own controls among them: property stage and first size.
  void initializeSites();
  /// The highest index of the control array, -1 if there is none.
  std::int32_t upperBound(std::string_view name) const;

 private:
  struct OwnControl {
    Site& site;
    std::vector<std::pair<std::string, bool>> stored;
  };

  std::vector<std::unique_ptr<Window>> windows_;
  std::vector<OwnControl> ownControls_;
};

}  // namespace kestrel::headless
