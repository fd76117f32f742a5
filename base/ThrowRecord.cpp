#include "ThrowRecord.h"

namespace kestrel {
namespace {

// In a library that a host loads late, a thread's first access to an ordinary thread-local variable allocates
// memory. A throw of std::bad_alloc can't afford that.
#ifdef __ELF__
[[gnu::tls_model("initial-exec")]]
#endif
thread_local ThrowRecord* theRecord = nullptr;

/// In libstdc++ and libc++ an exception_ptr is one pointer, to the exception object.
const void* ObjectOf(const std::exception_ptr& error) {
  static_assert(sizeof(error) == sizeof(const void*));
  return *reinterpret_cast<void* const*>(&error);
}

}  // namespace

ThrowRecord::ThrowRecord() { theRecord = this; }

ThrowRecord::~ThrowRecord() {
  if (theRecord == this) theRecord = nullptr;
}

void ThrowRecord::Note(const void* exceptionObject) noexcept {
  ThrowRecord* const record = theRecord;
  if (record == nullptr) return;
  Throw& entry = record->throws_[record->next_];
  record->next_ = (record->next_ + 1) % kKept;
  entry.object = exceptionObject;
  entry.stack = CallStack::Record(1);
}

const CallStack* ThrowRecord::OfCurrentError() noexcept {
  const ThrowRecord* const record = theRecord;
  const void* const object = ObjectOf(std::current_exception());
  if (record == nullptr || object == nullptr) return nullptr;
  // Memory of exception objects is reused, so the latest entry is the right one.
  for (std::size_t back = 1; back <= kKept; ++back) {
    const Throw& entry = record->throws_[(record->next_ + kKept - back) % kKept];
    if (entry.object == object) return &entry.stack;
  }
  return nullptr;
}

[[gnu::noinline]] void RethrowHere(const std::exception_ptr& error) {
  ThrowRecord::Note(ObjectOf(error));
  std::rethrow_exception(error);
}

}  // namespace kestrel
