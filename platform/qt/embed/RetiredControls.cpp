#include "RetiredControls.h"

namespace kestrel::qt {

RetiredControls::RetiredControls(OpenCalls& calls)
    : calls_(calls), watch_(calls.AllReturned.Connect([this] { release(); })) {}

void RetiredControls::take(std::unique_ptr<QObject> inside) {
  inside.release()->setParent(&kept_);
  if (!calls_.Any()) release();
}

void RetiredControls::release() {
  // The toolkit deletes them when control is back in the event loop below the current frames.
  for (QObject* inside : kept_.children()) inside->deleteLater();
}

}  // namespace kestrel::qt
