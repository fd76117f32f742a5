#include "LayoutCheck.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <set>

#include "base/Numbers.h"
#include "imaging/contract/Moorage.h"

namespace kestrel::docking {

namespace {

constexpr std::int32_t kPictureSize = 16;
constexpr std::array kCommandTypes = {kCommandButton, kCommandCombo, kCommandMenu, kCommandList,
                                      kCommandPanel};

std::string quoted(const std::string& name) { return '"' + name + '"'; }

/// Checks a layout and stops at the first inconsistency.
class Check {
 public:
  explicit Check(const StoredLayout& layout) : layout_(layout) {}

  std::string run() {
    names(layout_.images, &StoredImage::name, images_, "image");
    for (const std::string& category : layout_.categories) unique(category, categories_, "category");
    names(layout_.commands, &StoredCommand::key, commands_, "command");
    names(layout_.bars, &StoredBar::name, bars_, "bar");
    names(layout_.panes, &StoredPane::name, panes_, "pane");
    names(layout_.dockWindows, &StoredDockWindow::key, dockWindows_, "dock window");
    for (const StoredImage& image : layout_.images) pictures(image);
    for (const StoredCommand& command : layout_.commands) references(command);
    for (const StoredBar& bar : layout_.bars) entries(bar.name, bar.entries);
    for (const StoredDockWindow& window : layout_.dockWindows) {
      requireKnown(window.pane, panes_, "pane", window.key);
    }
    if (found_.empty()) findMenuCycles();
    return found_;
  }

 private:
  using Names = std::set<std::string>;

  template <typename T>
  void names(const std::vector<T>& things, std::string T::*name, Names& into, const char* kind) {
    for (const T& thing : things) unique(thing.*name, into, kind);
  }

  void unique(const std::string& name, Names& into, const char* kind) {
    if (name.empty()) report(std::string("a ") + kind + " has no name");
    if (!into.insert(LowerCase(name)).second)
      report(std::string("the ") + kind + ' ' + quoted(name) + " is defined twice");
  }

  void requireKnown(const std::string& name, const Names& among, const char* kind, const std::string& user) {
    if (!among.contains(LowerCase(name))) {
      report(std::string("the ") + kind + ' ' + quoted(name) + " of " + quoted(user) + " does not exist");
    }
  }

  void pictures(const StoredImage& image) {
    for (const StoredPicture* picture : {&image.normal, &image.disabled}) {
      if (picture->width != kPictureSize || picture->height != kPictureSize) {
        report("the image " + quoted(image.name) + " is not 16 by 16 pixels");
      }
    }
  }

  void references(const StoredCommand& command) {
    if (std::find(kCommandTypes.begin(), kCommandTypes.end(), command.type) == kCommandTypes.end()) {
      report("the command " + quoted(command.key) + " has an unknown type");
    }
    if (!command.category.empty()) requireKnown(command.category, categories_, "category", command.key);
    if (!command.image.empty()) requireKnown(command.image, images_, "image", command.key);
    if (command.type != kCommandMenu && !command.menu.empty()) {
      report("the command " + quoted(command.key) + " has entries but is not a menu");
    }
    entries(command.key, command.menu);
  }

  void entries(const std::string& owner, const std::vector<StoredEntry>& list) {
    for (const StoredEntry& entry : list) requireKnown(entry.command, commands_, "entry", owner);
  }

  /// Reports a menu that contains itself, directly or not. Repeatedly removes menus that contain no remaining
  /// menu (topological sort); the rest form cycles.
  void findMenuCycles() {
    std::map<std::string, const StoredCommand*> open;
    for (const StoredCommand& command : layout_.commands) {
      if (command.type == kCommandMenu) open.emplace(LowerCase(command.key), &command);
    }
    const auto leadsOn = [&](const StoredEntry& entry) { return open.contains(LowerCase(entry.command)); };
    const auto ends = [&](const auto& menu) {
      return std::none_of(menu.second->menu.begin(), menu.second->menu.end(), leadsOn);
    };
    while (std::erase_if(open, ends) > 0) {
    }
    if (!open.empty()) report("the menu " + quoted(open.begin()->second->key) + " contains itself");
  }

  void report(const std::string& what) {
    if (found_.empty()) found_ = what;
  }

  const StoredLayout& layout_;
  Names images_, categories_, commands_, bars_, panes_, dockWindows_;
  std::string found_;
};

}  // namespace

std::string inconsistencyIn(const StoredLayout& layout) { return Check(layout).run(); }

}  // namespace kestrel::docking
