#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "Description.h"

/// The whole public interface.
namespace kestrel::dispatch {

/// All classes, and all enumerations, in the order of their names.
std::span<const ClassDescription* const> Classes();
std::span<const EnumerationDescription* const> Enumerations();

/// The class of that name, ignoring the case of ASCII letters; null if there is none.
const ClassDescription* FindClass(std::string_view name);

/// A new object of a class. Raises RuntimeError 429 for a class that does not exist or that hosts cannot
/// create. The thread must be attached to a platform (`modProcessing`).
std::shared_ptr<const Reference> Create(std::string_view name);

}  // namespace kestrel::dispatch
