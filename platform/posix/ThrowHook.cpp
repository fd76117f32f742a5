#include "ThrowHook.h"

#include <cxxabi.h>
#include <dlfcn.h>

#include <exception>
#include <typeinfo>

#include "base/ThrowRecord.h"

namespace {

using Throw = decltype(&abi::__cxa_throw);

// References another symbol in the object file of `__cxa_throw` in the C++ library. A static link therefore
// includes that file, whose strong definition replaces the weak one below; otherwise there would be no next
// definition to call.
[[gnu::used]] const auto kRuntimeFile = &abi::__cxa_init_primary_exception;

/// That of the C++ library, which a host may load before the library that contains the hook: then no
/// definition is next in lookup order.
void* throwOfRuntime() {
  Dl_info runtime{};
  if (dladdr(reinterpret_cast<const void*>(kRuntimeFile), &runtime) == 0) return nullptr;
  void* const library = dlopen(runtime.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
  return library == nullptr ? nullptr : dlsym(library, "__cxa_throw");
}

/// The next definition in lookup order: the runtime's, or another hook's.
Throw nextThrow() {
  static const auto next = [] {
    void* const found = dlsym(RTLD_NEXT, "__cxa_throw");
    return reinterpret_cast<Throw>(found != nullptr ? found : throwOfRuntime());
  }();
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

void requireThrowHook() { nextThrow(); }

}  // namespace kestrel::posix
