#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TextPattern.h"

namespace kestrel {

/// An English text and its translation. Texts may have placeholders, see `TextPattern`.
struct CatalogEntry {
  std::string_view english;  ///< for a count of 1, if the text has a count
  std::string_view plural;   ///< English for other counts; empty for a text without a count
  std::span<const std::string_view> translations;  ///< one, or one for each plural form of the language
};

/// The texts of one language.
struct CatalogTable {
  std::string_view language;  ///< ISO 639, "de"
  bool rightToLeft = false;
  /// The index of the translation for a count.
  std::size_t (*pluralForm)(std::uint64_t count) = nullptr;
  std::span<const CatalogEntry> entries;  ///< sorted by `english`
};

/// Translates English texts as they are shown. The logic composes its texts in English, and hosts read them
/// so; therefore a composed sentence is recognized by the entry whose fixed parts it has, and its variable
/// parts are put into the translation.
class Catalog {
 public:
  /// The table must outlive the catalog.
  explicit Catalog(const CatalogTable& table);

  std::string_view Language() const { return table_.language; }
  bool IsRightToLeft() const { return table_.rightToLeft; }

  /// The translation of a text: of the whole, else of each of its lines and sentences that has one. The text
  /// itself where there is none.
  std::string Translated(std::string_view english) const;

 private:
  struct Composed {
    TextPattern pattern;
    const CatalogEntry* entry;
  };

  /// Whether a part of a composed sentence may have the end of a sentence inside.
  enum class Parts { kWithinASentence, kAny };

  void Add(std::string_view english, const CatalogEntry& entry);
  /// The translation of a text that is an entry or is composed as one.
  std::optional<std::string> Find(std::string_view english, Parts parts) const;
  std::string Line(std::string_view line) const;
  std::string Filled(const CatalogEntry& entry, const TextPattern::Parts& parts) const;

  const CatalogTable& table_;
  std::vector<Composed> composed_;  ///< those with the longest fixed text first
};

}  // namespace kestrel
