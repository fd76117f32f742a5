#include "DockWindowModel.h"

#include "MoorageModel.h"

namespace kestrel::docking {

void DockWindowModel::show(bool value, std::int32_t reason) {
  if (stored_.visible == value) return;
  CancelValue cancel;
  (value ? suite_.DockWindowShowing : suite_.DockWindowHiding)(*this, reason, cancel);
  if (cancel.Value || stored_.visible == value) return;
  stored_.visible = value;
  suite_.updated(*this);
}

}  // namespace kestrel::docking
