#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrel::engine::metafile {

/// Symbol faces: faces with symbols instead of letters at text codes.
enum class SignFace { none, symbol, wingdings, wingdings2, wingdings3, webdings, mathExtra, unknown };

/// The symbol face with this name (case-insensitive). Other faces of the symbol character set are `unknown`;
/// common text faces are `none` even in that character set, which some programs write for them by mistake.
SignFace signFaceOf(std::string_view face, std::uint8_t charset);

/// The Unicode character of a symbol; 0 if unknown.
std::uint16_t signOf(SignFace face, std::uint8_t code);

/// The name of a face in lower case, without spaces.
std::string plainName(std::string_view face);

/// The face to draw Unicode text with: the same for text faces, a text face for symbol faces.
std::string textFaceFor(const std::string& face);

/// Whether it is a common text face, whose glyphs are ordered as the TrueType format lists them for Macintosh
/// fonts.
bool isUsualTextFace(std::string_view face);

}  // namespace kestrel::engine::metafile
