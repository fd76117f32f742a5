#pragma once

namespace kestrel::posix {

/// Links the throw hook into the program: each throw, in the program and in the C++ library, then calls
/// `ThrowRecord::Note` first and the runtime's own `__cxa_throw` after it.
///
/// The hook is a definition of `__cxa_throw`, chosen by the dynamic linker. It takes effect if the component
/// is linked into the program, or into a library before the C++ library. It has no effect, and does no harm,
/// if
/// - a program that already has the C++ library loads the component later (dlopen);
/// - the host has a definition of its own, which comes first;
/// - the C++ library is linked statically: its own definition then replaces this weak one.
///
/// The shared libraries for hosts keep the hook to themselves: a host's throws are not ours. In them it
/// records the throws of their own code, and no errors that the C++ library throws.
///
/// Without the hook a RuntimeError still has the stack recorded at its construction. Errors of the standard
/// library are then reported with the line of the reporting trailer.
///
/// Cost of a throw: a check of one thread-local pointer, and on a thread with a record a walk of the stack,
/// about 2 microseconds (`RaiseAndCatchRecorded` of bench_diagnostics).
void requireThrowHook();

}  // namespace kestrel::posix
