#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrel::tools {

/// A text and its translations, one for each plural form if it has a count.
struct PoEntry {
  std::string english;
  std::string plural;
  std::vector<std::string> translations;
};

/// A catalog in gettext's format.
struct PoFile {
  std::string language;
  /// The expression in C for the index of the form for the count n; "0" in a language without plurals.
  std::string pluralForm = "0";
  std::size_t pluralForms = 1;
  std::vector<PoEntry> entries;  ///< sorted by the English text
};

/// Reads a catalog. Entries without a translation and those that a translator has marked "fuzzy" are left
/// out. Raises RuntimeError 5, with the number of the line, for a text that is not one.
PoFile readPo(std::string_view text);

}  // namespace kestrel::tools
