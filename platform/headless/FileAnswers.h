#pragma once

#include <cstdint>

#include "imaging/contract/UserInterface.h"

namespace kestrel::headless {

/// The style of the question about a file whose name is taken, or that has no trash. Its answers:
/// `kAnswerYes` replaces the file, or deletes it for good; `kAnswerNo` skips it; `kAnswerCancel` ends the
/// work; or these.
inline constexpr std::int32_t kBoxFileQuestion = 8;

/// Keeps both files.
inline constexpr std::int32_t kAnswerKeepBoth = 101;
/// Added to an answer: the same for all further files.
inline constexpr std::int32_t kAnswerForAll = 1000;

}  // namespace kestrel::headless
