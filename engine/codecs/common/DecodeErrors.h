#pragma once

#include <cstdint>
#include <string_view>

#include "Decoded.h"

namespace kestrel::engine {

/// Raises RuntimeError 481 with this sentence.
[[noreturn]] void refusePicture(std::string_view sentence);

/// Refuses a size before memory is asked for. RuntimeError 7: more pixels than a bitmap can have, or than fit
/// into a quarter of the machine's memory. RuntimeError 481, as the file cannot mean it: sides below 1, or so
/// many pixels that `fileSize` bytes hold less than an eighth of them even at `pixelsPerByte`, the most the
/// format's compression can do. (A file that was cut short still opens with what it holds; one that is a lie
/// does not.)
void checkClaimedSize(std::int64_t width, std::int64_t height, std::size_t fileSize,
                      std::int64_t pixelsPerByte);

/// The end of a file that was cut short after `rows` whole rows: makes the rest transparent and tells so in
/// `decoded.notice`. Raises RuntimeError 481 if there is not one row.
void keepRows(Decoded& decoded, std::int32_t rows);

}  // namespace kestrel::engine
