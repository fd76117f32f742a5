#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrel::engine::metafile {

/// Faces that have signs instead of letters at the codes of text.
enum class SignFace { none, symbol, wingdings, wingdings2, wingdings3, webdings, mathExtra, unknown };

/// The kind of a face, whatever the case of its name. Faces of the symbol character set that are not known
/// are `unknown`; the usual faces of text are `none` even in that character set, which some programs write
/// for them by mistake.
SignFace signFaceOf(std::string_view face, std::uint8_t charset);

/// The Unicode letter of a sign; 0 if it is not known.
std::uint16_t signOf(SignFace face, std::uint8_t code);

/// The name of a face in lower case, without spaces.
std::string plainName(std::string_view face);

/// The face to draw letters with that were turned into Unicode: the same for text, a face of text for faces
/// of signs.
std::string textFaceFor(const std::string& face);

/// Whether it is one of the common faces of text, which order their glyphs as the TrueType format lists them
/// for Macintosh fonts.
bool isUsualTextFace(std::string_view face);

}  // namespace kestrel::engine::metafile
