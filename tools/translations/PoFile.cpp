#include "PoFile.h"

#include <algorithm>
#include <charconv>

#include "base/RuntimeError.h"

namespace kestrel::tools {
namespace {

[[noreturn]] void refuse(std::size_t line, const std::string& problem) {
  throw RuntimeError(err::kInvalidCall, "line " + std::to_string(line) + ": " + problem);
}

/// The text between the quotation marks.
std::string unquoted(std::string_view text, std::size_t line) {
  if (text.size() < 2 || text.front() != '"' || text.back() != '"')
    refuse(line, "a text without quotation marks");
  text = text.substr(1, text.size() - 2);
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      result += text[i];
      continue;
    }
    if (++i == text.size()) refuse(line, "a text that ends with a backslash");
    switch (text[i]) {
      case 'n':
        result += '\n';
        break;
      case 't':
        result += '\t';
        break;
      case '"':
      case '\\':
        result += text[i];
        break;
      default:
        refuse(line, "an unknown escape sequence");
    }
  }
  return result;
}

/// The value of a line of the header, which is the translation of the empty text.
std::string headerValue(std::string_view header, std::string_view name) {
  const std::size_t begin = header.find(name);
  if (begin == std::string_view::npos) return {};
  const std::size_t first = header.find_first_not_of(' ', begin + name.size());
  return std::string(header.substr(first, header.find('\n', first) - first));
}

class Reader {
 public:
  PoFile read(std::string_view text) {
    while (!text.empty()) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      ++line_;
      line(text.substr(0, end));
      text.remove_prefix(std::min(end + 1, text.size()));
    }
    finish();
    const auto byEnglish = [](const PoEntry& a, const PoEntry& b) { return a.english < b.english; };
    std::sort(file_.entries.begin(), file_.entries.end(), byEnglish);
    return std::move(file_);
  }

 private:
  void line(std::string_view text) {
    if (text.starts_with("#,") && text.find("fuzzy") != std::string_view::npos) fuzzy_ = true;
    if (text.empty()) return finish();
    if (text.front() == '#') return;
    if (text.front() == '"') {
      if (target_ == nullptr) refuse(line_, "a text that belongs to nothing");
      *target_ += unquoted(text, line_);
      return;
    }
    const std::size_t blank = text.find(' ');
    if (blank == std::string_view::npos) refuse(line_, "a keyword without a text");
    target_ = &part(text.substr(0, blank));
    *target_ = unquoted(text.substr(blank + 1), line_);
  }

  std::string& part(std::string_view keyword) {
    if (keyword == "msgid") {
      if (started_) finish();
      started_ = true;
      return entry_.english;
    }
    if (keyword == "msgid_plural") return entry_.plural;
    std::size_t form = 0;
    if (keyword != "msgstr") {
      const bool isForm = keyword.size() == 9 && keyword.starts_with("msgstr[") && keyword.back() == ']';
      if (!isForm || keyword[7] < '0' || keyword[7] > '5') refuse(line_, "an unknown keyword");
      form = static_cast<std::size_t>(keyword[7] - '0');
    }
    if (entry_.translations.size() <= form) entry_.translations.resize(form + 1);
    return entry_.translations[form];
  }

  void finish() {
    target_ = nullptr;
    if (!started_) return;
    if (entry_.english.empty()) {
      readHeader();
    } else if (isComplete()) {
      file_.entries.push_back(std::move(entry_));
    }
    entry_ = {};
    started_ = fuzzy_ = false;
  }

  bool isComplete() const {
    const auto isEmpty = [](const std::string& text) { return text.empty(); };
    const std::vector<std::string>& forms = entry_.translations;
    return !fuzzy_ && forms.size() == (entry_.plural.empty() ? 1 : file_.pluralForms) &&
           std::none_of(forms.begin(), forms.end(), isEmpty);
  }

  void readHeader() {
    const std::string header = entry_.translations.empty() ? std::string() : entry_.translations.front();
    file_.language = headerValue(header, "Language:");
    if (file_.language.empty()) refuse(line_, "the header names no language");
    const std::string forms = headerValue(header, "nplurals=");
    std::from_chars(forms.data(), forms.data() + forms.size(), file_.pluralForms);
    std::string expression = headerValue(header, "plural=");
    expression = expression.substr(0, expression.find(';'));
    if (expression.find_first_not_of("n0123456789 ()<>=!&|?:%") != std::string::npos) {
      refuse(line_, "the plural forms are not an expression of n");
    }
    if (!expression.empty()) file_.pluralForm = expression;
  }

  PoFile file_;
  PoEntry entry_;
  std::string* target_ = nullptr;
  std::size_t line_ = 0;
  bool started_ = false;
  bool fuzzy_ = false;
};

}  // namespace

PoFile readPo(std::string_view text) { return Reader().read(text); }

}  // namespace kestrel::tools
