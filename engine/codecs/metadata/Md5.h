#pragma once

#include <string>

#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine {

/// The MD5 digest (RFC 1321) as 32 hexadecimal digits, capital letters. Files that want one as a name only:
/// it protects nothing.
std::string md5Of(Bytes data);

}  // namespace kestrel::engine
