#pragma once

namespace kestrel::posix {

/// Makes the throw hook part of the program: from then on each throw, in the program and in the C++ library,
/// goes through `ThrowRecord::Note` first and on to the runtime's own `__cxa_throw`.
///
/// The hook is a definition of `__cxa_throw`, chosen by the dynamic linker. It takes effect where the
/// component is linked into the program, or into a library ahead of the C++ library. It has no effect, and
/// does no harm, where
/// - a program that has the C++ library already loads the component later (dlopen);
/// - the host has a definition of its own, which comes first;
/// - the C++ library is linked statically: its own definition then takes the place of this weak one.
///
/// Without the hook a RuntimeError still has the stack that it recorded when it was made. Errors of the
/// standard library then have the line of the trailer that reports them.
///
/// Cost of a throw: a check of one thread-local pointer, and on a thread that keeps a record a walk of the
/// stack, some 2 microseconds (`RaiseAndCatchRecorded` of bench_diagnostics).
void requireThrowHook();

}  // namespace kestrel::posix
