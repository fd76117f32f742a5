#pragma once

#include <string>

#include "StoredLayout.h"

namespace kestrel::docking {

/// The first inconsistency of the layout, as the end of a sentence ("the entry \"btnX\" of \"mnuY\" does not
/// exist"), or empty if it is valid: keys are unique ignoring case, every referenced name exists, no menu
/// contains itself, and pictures are 16 by 16.
std::string inconsistencyIn(const StoredLayout& layout);

}  // namespace kestrel::docking
