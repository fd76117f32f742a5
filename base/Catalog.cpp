#include "Catalog.h"

#include <algorithm>
#include <charconv>

namespace kestrel {
namespace {

/// A text with fewer letters besides its placeholders, such as "%1 of %2", is an entry for a caller that
/// fills it, and no sentence to recognize: names of files would match it.
constexpr std::size_t kFewestLetters = 8;

constexpr std::string_view kLineEnds = "\r\n";
/// Ends a sentence in scripts that put no blank between sentences.
constexpr std::string_view kWideStop = "\u3002";

bool EndsSentence(char c) { return c == '.' || c == '?' || c == '!' || c == ':'; }

std::uint64_t CountOf(std::string_view digits) {
  std::uint64_t count = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
  return error == std::errc() ? count : UINT64_MAX;
}

/// The position of the blank behind the last sentence that ends before `end`; npos if there is none.
std::size_t LastBoundary(std::string_view line, std::size_t end) {
  for (std::size_t i = std::min(end, line.size()); i-- > 1;) {
    if (line[i] == ' ' && EndsSentence(line[i - 1])) return i;
  }
  return std::string_view::npos;
}

/// Whether a sentence ends inside of a part: then it may be of several sentences, of which one entry has only
/// the beginning or the end.
bool HasSentenceEnd(const TextPattern::Parts& parts) {
  return std::any_of(parts.text.begin(), parts.text.end(), [](std::string_view part) {
    return part.find(". ") != part.npos || part.find("? ") != part.npos || part.find("! ") != part.npos;
  });
}

std::size_t FirstBoundary(std::string_view line) {
  for (std::size_t i = 1; i < line.size(); ++i) {
    if (line[i] == ' ' && EndsSentence(line[i - 1])) return i;
  }
  return std::string_view::npos;
}

}  // namespace

Catalog::Catalog(const CatalogTable& table) : table_(table) {
  for (const CatalogEntry& entry : table_.entries) {
    Add(entry.english, entry);
    if (!entry.plural.empty() && entry.plural != entry.english) Add(entry.plural, entry);
  }
  std::stable_sort(composed_.begin(), composed_.end(), [](const Composed& a, const Composed& b) {
    return a.pattern.Letters() > b.pattern.Letters();
  });
}

void Catalog::Add(std::string_view english, const CatalogEntry& entry) {
  TextPattern pattern(english);
  if (!pattern.HasPlaceholders()) return;
  const bool isSentence = pattern.HasTexts() || pattern.HasCount() || pattern.Letters() >= kFewestLetters;
  if (isSentence) composed_.push_back({std::move(pattern), &entry});
}

std::string Catalog::Filled(const CatalogEntry& entry, const TextPattern::Parts& parts) const {
  const std::size_t form =
      entry.plural.empty() ? 0 : table_.pluralForm(parts.text[0].empty() ? 1 : CountOf(parts.text[0]));
  const std::string_view translation = entry.translations[std::min(form, entry.translations.size() - 1)];
  return TextPattern(translation).Fill([&](std::size_t number) {
    return parts.translated[number] ? Translated(parts.text[number]) : std::string(parts.text[number]);
  });
}

std::optional<std::string> Catalog::Find(std::string_view english, Parts allowed) const {
  const auto less = [](const CatalogEntry& entry, std::string_view text) { return entry.english < text; };
  const auto entry = std::lower_bound(table_.entries.begin(), table_.entries.end(), english, less);
  if (entry != table_.entries.end() && entry->english == english) {
    return entry->plural.empty() ? std::string(entry->translations.front()) : Filled(*entry, {});
  }
  for (const Composed& composed : composed_) {
    const auto parts = composed.pattern.Match(english);
    if (!parts || (allowed == Parts::kWithinASentence && HasSentenceEnd(*parts))) continue;
    return Filled(*composed.entry, *parts);
  }
  return std::nullopt;
}

std::string Catalog::Line(std::string_view line) const {
  if (line.empty()) return {};
  if (auto whole = Find(line, Parts::kWithinASentence)) return *std::move(whole);
  // Several sentences: as many as possible by one entry.
  for (std::size_t end = LastBoundary(line, line.size()); end != std::string_view::npos;
       end = LastBoundary(line, end)) {
    const auto head = Find(line.substr(0, end), Parts::kWithinASentence);
    if (!head) continue;
    const std::string rest = Line(line.substr(end + 1));
    return *head + (head->ends_with(kWideStop) ? "" : " ") + rest;
  }
  if (auto whole = Find(line, Parts::kAny)) return *std::move(whole);
  const std::size_t first = FirstBoundary(line);
  if (first == std::string_view::npos || !EndsSentence(line.back())) return std::string(line);
  return std::string(line.substr(0, first + 1)) + Line(line.substr(first + 1));
}

std::string Catalog::Translated(std::string_view english) const {
  std::string result;
  while (!english.empty()) {
    const std::size_t end = std::min(english.find_first_of(kLineEnds), english.size());
    result += Line(english.substr(0, end));
    english.remove_prefix(end);
    const std::size_t next = std::min(english.find_first_not_of(kLineEnds), english.size());
    result += english.substr(0, next);
    english.remove_prefix(next);
  }
  return result;
}

}  // namespace kestrel
