#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "FormDescription.h"
#include "Window.h"
#include "imaging/contract/Control.h"

namespace kestrel::headless {

class Site;
struct Surroundings;

/// The controls of a form or of a control's surface, found by name, whatever its case, and index.
class ControlSet {
 public:
  /// Makes the described controls, with their stored values, inside the window.
  void build(Window& container, const std::vector<ControlDescription>& descriptions,
             const Surroundings& surroundings);
  void add(std::unique_ptr<Window> window);

  /// Null if there is none.
  Control* find(std::string_view name, std::int32_t index) const;
  /// The sites of controls of ours among them.
  std::vector<Site*> sites() const;
  /// The highest index of the control array, -1 if there is none.
  std::int32_t upperBound(std::string_view name) const;

 private:
  std::vector<std::unique_ptr<Window>> windows_;
};

}  // namespace kestrel::headless
