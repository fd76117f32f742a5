#include "ErrorListener.h"

namespace kestrel {
namespace {

ErrorListener*& TheListener() {
  thread_local ErrorListener* listener = nullptr;
  return listener;
}

}  // namespace

void ErrorListener::Attach(ErrorListener* listener) { TheListener() = listener; }

ErrorListener* ErrorListener::Attached() { return TheListener(); }

}  // namespace kestrel
