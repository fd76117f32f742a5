#pragma once

#include <tiffio.h>

namespace kestrel::engine::tiff {

/// Corrects the compression tag of fax-coded files, which some programs write wrongly (CCITT RLE, Group 3,
/// Group 4). If the first strip or tile decodes with warnings, selects the coding with the fewest. No effect
/// on other compressions. The file must be opened by a TiffStream.
void correctFaxCoding(TIFF* tiff);

}  // namespace kestrel::engine::tiff
