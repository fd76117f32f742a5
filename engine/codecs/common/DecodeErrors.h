#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Decoded.h"

namespace kestrel::engine {

/// Raises RuntimeError 481 with this text.
[[noreturn]] void refusePicture(std::string_view sentence);

/// Checks a picture size from a file header before memory is allocated. Raises RuntimeError 7 for more pixels
/// than a bitmap can have or than fit into a quarter of the machine's memory. Raises RuntimeError 481 for
/// sides below 1, and for sizes that are implausible: `fileSize` bytes hold less than an eighth of the pixels
/// even at `pixelsPerByte`, the format's highest compression ratio. (A truncated file can still be opened
/// with the rows it holds.)
void checkClaimedSize(std::int64_t width, std::int64_t height, std::size_t fileSize,
                      std::int64_t pixelsPerByte);

// Texts for `Decoded::notice`.

/// "The file is damaged or truncated: " and the problem, which is without a full stop.
std::string damageNotice(std::string_view problem);
/// The notice of a file in which something is missing that no number describes.
std::string partsMissingNotice();
/// The notice of a file of which the first `rows` of `height` rows could be read.
std::string rowsReadNotice(std::int64_t rows, std::int64_t height);

/// Ends the decoding of a file truncated after `rows` complete rows: makes the rest transparent and sets
/// `decoded.notice`. Raises RuntimeError 481 if `rows` is 0.
void keepRows(Decoded& decoded, std::int32_t rows);

}  // namespace kestrel::engine
