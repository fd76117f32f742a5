#include "RetiredObjects.h"

#include <utility>

namespace kestrel::qt {
namespace {

class Holder final : public QObject {
 public:
  Holder(std::shared_ptr<void> object, QObject& parent) : QObject(&parent), object_(std::move(object)) {}

 private:
  std::shared_ptr<void> object_;
};

}  // namespace

RetiredObjects::RetiredObjects(OpenCalls& calls)
    : calls_(calls), watch_(calls.AllReturned.Connect([this] { release(); })) {}

void RetiredObjects::take(std::shared_ptr<void> object) {
  new Holder(std::move(object), kept_);
  if (!calls_.Any()) release();
}

void RetiredObjects::clear() {
  const QObjectList holders = kept_.children();
  qDeleteAll(holders);
}

void RetiredObjects::release() {
  // The toolkit deletes them when control is back in the event loop below the current frames.
  for (QObject* holder : kept_.children()) holder->deleteLater();
}

}  // namespace kestrel::qt
