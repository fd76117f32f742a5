#pragma once

#include <string>

#include "StoredLayout.h"

namespace kestrel::docking {

/// What makes the layout contradict itself, as the end of a sentence ("the entry \"btnX\" of \"mnuY\" is no
/// command"), or empty if it is sound: keys stand once whatever their case, every name that is referred to
/// exists, no menu contains itself, and pictures are 16 by 16.
std::string contradictionIn(const StoredLayout& layout);

}  // namespace kestrel::docking
