#include "RuntimeError.h"

#include <utility>

namespace kestrel {

RuntimeError::RuntimeError(std::int32_t number, std::string description, std::string source)
    : number_(number),
      description_(std::move(description)),
      source_(std::move(source)),
      stack_(CallStack::Record()) {}

}  // namespace kestrel
