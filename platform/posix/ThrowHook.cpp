#include "ThrowHook.h"

#include <cxxabi.h>
#include <dlfcn.h>

#include <exception>
#include <typeinfo>

#include "base/ThrowRecord.h"

namespace {

using Throw = decltype(&abi::__cxa_throw);

/// The next definition in lookup order: the runtime's, or another hook's.
Throw nextThrow() {
  static const auto next = reinterpret_cast<Throw>(dlsym(RTLD_NEXT, "__cxa_throw"));
  return next;
}

}  // namespace

extern "C" [[gnu::weak, gnu::visibility("default"), gnu::noreturn]] void __cxa_throw(void* object,
                                                                                     std::type_info* type,
                                                                                     void (*destroy)(void*)) {
  kestrel::ThrowRecord::Note(object);
  nextThrow()(object, type, destroy);
  std::terminate();
}

namespace kestrel::posix {

// References another symbol in the object file of `__cxa_throw` in the C++ library. A static link therefore
// includes that file, whose strong definition replaces the weak one above; otherwise there would be no next
// definition to call.
[[gnu::used]] const auto kRuntimeFile = &abi::__cxa_init_primary_exception;

void requireThrowHook() { nextThrow(); }

}  // namespace kestrel::posix
