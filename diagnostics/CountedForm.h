#pragma once

#include <memory>
#include <string>

#include "base/Event.h"
#include "imaging/contract/Form.h"
#include "modTollgarthSupport.h"

namespace kestrel {

/// The form of one of the component's windows, counted as an instance from its load to its unload. All of the
/// component's forms are made through this class, so every window is counted.
class CountedForm {
 public:
  /// Makes the form of that name on the apartment's platform. Raises RuntimeError 5 for a name that is not a
  /// counted window, and 429 for one without a form.
  explicit CountedForm(const std::string& name);
  ~CountedForm();
  CountedForm(const CountedForm&) = delete;
  CountedForm& operator=(const CountedForm&) = delete;

  Form& operator*() const { return *form_; }
  Form* operator->() const { return form_.get(); }

 private:
  void uncount();

  modTollgarthSupport::Counted object_;
  bool counted_ = false;
  std::unique_ptr<Form> form_;
  Connection load_;
  Connection unloaded_;
};

}  // namespace kestrel
