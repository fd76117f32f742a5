#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "MetafileObjects.h"
#include "MetafileSigns.h"
#include "engine/codecs/common/Decoded.h"

namespace kestrel::engine::metafile {

/// Placeholder for an unknown character; drawn as an empty box.
inline constexpr const char* kUnknownLetter = "\x01";

/// The sign that a face of signs has at a code, as UTF-8; the unknown letter for those that are not known.
std::string signLetter(SignFace face, std::uint32_t code);

/// The letters of a text in the code page that belongs to the font's character set, or of a font of signs,
/// each as UTF-8. An empty one holds the place of a further byte.
std::vector<std::string> lettersOf(Bytes text, const Font& font);

/// Characters of a UTF-16 text. An empty string marks the second half of a surrogate pair.
std::vector<std::string> lettersOf(const std::vector<std::uint16_t>& text, const Font& font);

/// Characters for glyph indices. An index has no meaning without the font, except in faces that order their
/// first glyphs as the TrueType format lists them for Macintosh fonts: there 3 to 97 are the ASCII
/// characters. Other characters are unknown; glyph 3 is a space in nearly every font.
std::vector<std::string> lettersOfGlyphs(const std::vector<std::uint16_t>& glyphs, const Font& font);

}  // namespace kestrel::engine::metafile
