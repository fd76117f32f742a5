#include "CountedForm.h"

#include <utility>

#include "base/Required.h"
#include "imaging/contract/Platform.h"

namespace kestrel {

CountedForm::CountedForm(const std::string& name)
    : object_(modTollgarthSupport::CountedWindow(name)),
      form_(Required(modTollgarthSupport::AttachedPlatform()).CreateForm(name)) {
  load_ = form_->Load.Connect([this] {
    if (!std::exchange(counted_, true)) modTollgarthSupport::qdkCountInstance(object_);
  });
  unloaded_ = form_->Unloaded.Connect([this] { uncount(); });
}

CountedForm::~CountedForm() { uncount(); }

void CountedForm::uncount() {
  if (std::exchange(counted_, false)) modTollgarthSupport::qdkUncountInstance(object_);
}

}  // namespace kestrel
