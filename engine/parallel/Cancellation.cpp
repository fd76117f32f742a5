#include "Cancellation.h"

#include <utility>

namespace kestrel::engine {
namespace {

thread_local const std::stop_token* current = nullptr;

}  // namespace

Cancelable::Cancelable(std::stop_token token)
    : token_(std::move(token)), before_(std::exchange(current, &token_)) {}

Cancelable::~Cancelable() { current = before_; }

bool isCanceled() noexcept { return current != nullptr && current->stop_requested(); }

void checkCanceled() {
  if (isCanceled()) throw Canceled();
}

}  // namespace kestrel::engine
