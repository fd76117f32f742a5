#pragma once

#include <memory>
#include <string>

#include "base/Event.h"
#include "imaging/contract/Form.h"
#include "modTollgarthSupport.h"

namespace kestrel {

/// The form of one of the component's windows, which counts as an instance from its load to its unload. The
/// component makes its forms in no other way, so each window counts by being made.
class CountedForm {
 public:
  /// Makes the form of that name on the apartment's platform. Raises RuntimeError 5 for a name that is not
  /// among the counted windows, and 429 for one without a form.
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
