#include "LayoutSource.h"

#include <charconv>
#include <functional>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "base/RuntimeError.h"
#include "imaging/contract/Moorage.h"
#include "platform/docking/HotKeyText.h"

namespace kestrel::tools {

namespace {

using namespace docking;

/// The words of a line; a quoted text is one word without its quotes. Raises RuntimeError 5 for an
/// unterminated quote.
std::vector<std::string> wordsOf(std::string_view line) {
  std::vector<std::string> words;
  for (std::size_t i = 0; i < line.size();) {
    if (line[i] == '#') break;
    if (line[i] == ' ') {
      ++i;
    } else if (line[i] == '"') {
      const std::size_t end = line.find('"', i + 1);
      if (end == std::string_view::npos) throw RuntimeError(err::kInvalidCall, "a quotation mark is missing");
      words.emplace_back(line.substr(i + 1, end - i - 1));
      i = end + 1;
    } else {
      const std::size_t end = std::min(line.find_first_of(" \"", i), line.size());
      words.emplace_back(line.substr(i, end - i));
      i = end;
    }
  }
  return words;
}

std::int32_t numberOf(const std::string& word) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size()) {
    throw RuntimeError(err::kInvalidCall, '"' + word + "\" is not a number");
  }
  return number;
}

Edge edgeOf(const std::string& word) {
  static const std::map<std::string_view, Edge> kEdges = {
      {"left", Edge::Left}, {"top", Edge::Top}, {"right", Edge::Right}, {"bottom", Edge::Bottom}};
  const auto found = kEdges.find(word);
  if (found == kEdges.end()) throw RuntimeError(err::kInvalidCall, '"' + word + "\" is not an edge");
  return found->second;
}

/// Builds the layout line by line. A line begins an object or sets a property of the last one.
class Builder {
 public:
  void line(const std::vector<std::string>& words) {
    words_ = words;
    const std::string& word = words[0];
    if (!general(word) && !begins(word) && !std::visit([&](auto of) { return tells(word, of); }, begun_)) {
      throw RuntimeError(err::kInvalidCall, '"' + word + "\" is not allowed here");
    }
  }

  StoredLayout take() { return std::move(layout_); }

 private:
  /// The last object's index in its list of the layout.
  struct OfCommand {
    std::size_t at;
  };
  struct OfBar {
    std::size_t at;
  };
  struct OfPane {
    std::size_t at;
  };
  struct OfWindow {
    std::size_t at;
  };

  bool general(const std::string& word) {
    if (word == "font") {
      layout_.font.name = argument(0, 2);
      layout_.font.height = numberOf(argument(1, 2)) * 10000;
    } else if (word == "images") {
      for (std::size_t i = 1; i < words_.size(); ++i)
        layout_.images.push_back({words_[i], StoredImage::kMagenta, {}, {}});
    } else if (word == "category") {
      layout_.categories.push_back(argument());
    } else {
      return false;
    }
    return true;
  }

  bool begins(const std::string& word) {
    static const std::map<std::string_view, std::int32_t> kCommandTypes = {{"button", kCommandButton},
                                                                           {"combo", kCommandCombo},
                                                                           {"menu", kCommandMenu},
                                                                           {"list", kCommandList},
                                                                           {"panel", kCommandPanel}};
    static const std::map<std::string_view, BarKind> kBarKinds = {
        {"menubar", BarKind::MenuBar}, {"toolbar", BarKind::ToolBar}, {"statusbar", BarKind::StatusBar}};
    if (const auto type = kCommandTypes.find(word); type != kCommandTypes.end()) {
      StoredCommand command;
      command.type = type->second;
      command.key = argument();
      if (!layout_.categories.empty()) command.category = layout_.categories.back();
      begin<OfCommand>(layout_.commands, std::move(command));
    } else if (const auto kind = kBarKinds.find(word); kind != kBarKinds.end()) {
      StoredBar bar;
      bar.name = argument();
      bar.kind = kind->second;
      begin<OfBar>(layout_.bars, std::move(bar));
    } else if (word == "pane") {
      begin<OfPane>(layout_.panes, StoredPane{argument(), Edge::Right, 0});
    } else if (word == "window") {
      if (layout_.panes.empty())
        throw RuntimeError(err::kInvalidCall, "a window comes before the first pane");
      begin<OfWindow>(layout_.dockWindows, StoredDockWindow{argument(), {}, layout_.panes.back().name, true});
    } else {
      return false;
    }
    return true;
  }

  template <typename Place, typename T>
  void begin(std::vector<T>& list, T thing) {
    list.push_back(std::move(thing));
    begun_ = Place{list.size() - 1};
  }

  bool tells(const std::string&, std::monostate) { return false; }

  bool tells(const std::string& word, OfCommand of) {
    StoredCommand& command = layout_.commands[of.at];
    const std::map<std::string_view, std::string*> texts = {{"caption", &command.caption},
                                                            {"short", &command.shortCaption},
                                                            {"description", &command.description},
                                                            {"image", &command.image},
                                                            {"text", &command.text}};
    const std::map<std::string_view, std::pair<bool*, bool>> marks = {
        {"hidden", {&command.visible, false}},
        {"pressed", {&command.pressed, true}},
        {"spring", {&command.spring, true}},
        {"progress", {&command.progress, true}}};
    if (const auto text = texts.find(word); text != texts.end()) {
      *text->second = argument();
    } else if (const auto mark = marks.find(word); mark != marks.end()) {
      argument(0, 0);
      *mark->second.first = mark->second.second;
    } else if (word == "hotkey") {
      command.hotKeys.push_back(hotKeyFromText(argument()));
    } else if (word == "width") {
      command.width = numberOf(argument());
    } else if (word == "entries") {
      entries(command.menu);
    } else {
      return false;
    }
    return true;
  }

  bool tells(const std::string& word, OfBar of) {
    StoredBar& bar = layout_.bars[of.at];
    if (word == "edge") {
      bar.edge = edgeOf(argument());
    } else if (word == "row") {
      bar.row = numberOf(argument());
    } else if (word == "hidden") {
      argument(0, 0);
      bar.visible = false;
    } else if (word == "entries") {
      entries(bar.entries);
    } else {
      return false;
    }
    return true;
  }

  bool tells(const std::string& word, OfPane of) {
    StoredPane& pane = layout_.panes[of.at];
    if (word == "edge") {
      pane.edge = edgeOf(argument());
    } else if (word == "size") {
      pane.size = numberOf(argument());
    } else {
      return false;
    }
    return true;
  }

  bool tells(const std::string& word, OfWindow of) {
    StoredDockWindow& window = layout_.dockWindows[of.at];
    if (word == "caption") {
      window.caption = argument();
    } else if (word == "hidden") {
      argument(0, 0);
      window.visible = false;
    } else {
      return false;
    }
    return true;
  }

  void entries(std::vector<StoredEntry>& list) {
    for (std::size_t i = 1; i < words_.size(); ++i) {
      if (words_[i] == "|") {
        separatorWaits_ = true;
      } else {
        list.push_back({words_[i], std::exchange(separatorWaits_, false)});
      }
    }
    if (separatorWaits_) throw RuntimeError(err::kInvalidCall, "a separator has no entry after it");
  }

  /// The argument at index `place`; the line must have `count` of them.
  const std::string& argument(std::size_t place = 0, std::size_t count = 1) {
    if (words_.size() != count + 1) {
      throw RuntimeError(err::kInvalidCall, '"' + words_[0] + "\" takes " + std::to_string(count) +
                                                (count == 1 ? " argument" : " arguments"));
    }
    return words_[count == 0 ? 0 : place + 1];
  }

  StoredLayout layout_;
  std::variant<std::monostate, OfCommand, OfBar, OfPane, OfWindow> begun_;
  std::vector<std::string> words_;
  bool separatorWaits_ = false;
};

}  // namespace

docking::StoredLayout parseLayoutSource(std::string_view text) {
  Builder builder;
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    try {
      if (const auto words = wordsOf(text.substr(0, end)); !words.empty()) builder.line(words);
    } catch (const RuntimeError& error) {
      throw RuntimeError(error.Number(), "Line " + std::to_string(number) + ": " + error.Description());
    }
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return builder.take();
}

}  // namespace kestrel::tools
