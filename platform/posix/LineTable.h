#pragma once

#include "imaging/contract/StackResolver.h"

namespace kestrel::posix {

/// Resolves addresses of this process by the line tables of the program and its shared libraries.
///
/// The tables are read on the first call and kept. Function names are the linker's, demangled if possible.
///
/// Linking this class also links the throw hook, which records where errors of the standard library were
/// thrown.
class LineTable : public StackResolver {
 public:
  LineTable();
  std::vector<SourcePlace> Resolve(std::uintptr_t returnAddress) override;
};

}  // namespace kestrel::posix
