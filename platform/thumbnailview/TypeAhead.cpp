#include "TypeAhead.h"

#include "base/CaseFolding.h"

namespace kestrel::thumbnails {
namespace {

/// Whether `text` is `letter` several times.
bool repeats(std::string_view text, std::string_view letter) {
  if (letter.empty() || text.size() <= letter.size() || text.size() % letter.size() != 0) return false;
  for (std::size_t i = 0; i < text.size(); i += letter.size()) {
    if (text.substr(i, letter.size()) != letter) return false;
  }
  return true;
}

}  // namespace

TypeAhead::Search TypeAhead::type(std::string_view text, Time now) {
  if (!typing(now)) typed_.clear();
  last_ = now;
  const std::string letter = FoldCase(text);
  const bool first = typed_.empty();
  typed_ += letter;
  if (repeats(typed_, letter)) return {letter, true};
  return {typed_, first};
}

bool TypeAhead::typing(Time now) const { return !typed_.empty() && now - last_ <= kPause; }

}  // namespace kestrel::thumbnails
