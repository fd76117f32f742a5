#include "RetiredEditors.h"

namespace kestrel::qt {

RetiredEditors::RetiredEditors(OpenCalls& calls)
    : calls_(calls), watch_(calls.AllReturned.Connect([this] { release(); })) {}

void RetiredEditors::take(std::unique_ptr<QObject> inside) {
  inside.release()->setParent(&kept_);
  if (!calls_.Any()) release();
}

void RetiredEditors::release() {
  // The toolkit deletes them when control is back in the event loop below the current frames.
  for (QObject* inside : kept_.children()) inside->deleteLater();
}

}  // namespace kestrel::qt
