#pragma once

#include <tiffio.h>

namespace kestrel::engine::tiff {

/// Some programs name the wrong one of the fax codings (CCITT run lengths, Group 3, Group 4). If the first
/// strip or tile does not decode without complaint as the coding that the directory names, sets the one that
/// decodes it with the fewest. Does nothing for other compressions. The file must be one of a TiffStream.
void correctFaxCoding(TIFF* tiff);

}  // namespace kestrel::engine::tiff
