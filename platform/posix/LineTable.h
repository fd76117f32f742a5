#pragma once

#include "imaging/contract/StackResolver.h"

namespace kestrel::posix {

/// Resolves addresses of this process by the line tables of the program and its shared libraries.
///
/// The tables are read at the first question, and kept. Functions are named as the linker knows them, or,
/// where that can be told, as in the source.
///
/// The throw hook comes along, which records where errors of the standard library were thrown.
class LineTable : public StackResolver {
 public:
  LineTable();
  std::vector<SourcePlace> Resolve(std::uintptr_t returnAddress) override;
};

}  // namespace kestrel::posix
