#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "MetafileObjects.h"
#include "MetafileSigns.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::metafile {

/// Stands for a letter that is there but cannot be told; it is drawn as an empty box.
inline constexpr const char* kUnknownLetter = "\x01";

/// The sign that a face of signs has at a code, as UTF-8; the unknown letter for those that are not known.
std::string signLetter(SignFace face, std::uint32_t code);

/// The letters of a text in the code page that belongs to the font's character set, or of a font of signs,
/// each as UTF-8. An empty one holds the place of a further byte.
std::vector<std::string> lettersOf(Bytes text, const Font& font);

/// The letters of a text in UTF-16. An empty one holds the place of the second half of a pair.
std::vector<std::string> lettersOf(const std::vector<std::uint16_t>& text, const Font& font);

/// The letters that numbers of glyphs stand for. Without the font a number tells nothing, except in the faces
/// that number their first glyphs in the order that the TrueType format lists for Macintosh fonts: there
/// 3 to 97 are the signs of ASCII. Other letters are unknown; a space is glyph 3 in nearly every font.
std::vector<std::string> lettersOfGlyphs(const std::vector<std::uint16_t>& glyphs, const Font& font);

}  // namespace kestrel::engine::metafile
