#include "EditorWindows.h"

#include <algorithm>
#include <utility>

#include "base/Numbers.h"
#include "settings/modProcessing.h"

namespace kestrel::app {
namespace {

/// Opened by one command. Each has a picture of full size in memory.
constexpr std::size_t kMostAtOnce = 10;

}  // namespace

EditorWindows::EditorWindows(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}

EditorWindows::~EditorWindows() = default;

EditorWindow& EditorWindows::make() {
  auto place = windows_.insert(windows_.end(), nullptr);
  *place = std::make_unique<EditorWindow>([this, place] {
    const EditorWindow* const window = place->get();
    // The window's own handlers are still on the stack.
    surroundings_.later([this, window, alive = std::weak_ptr(alive_)] {
      if (!alive.expired()) close(window);
    });
  });
  if (surroundings_.store) (*place)->keepChanges(*surroundings_.store);
  return **place;
}

void EditorWindows::close(const EditorWindow* window) {
  std::erase_if(windows_, [window](const auto& each) { return each.get() == window; });
  surroundings_.closed();
}

bool EditorWindows::open(const std::string& file) {
  for (const auto& window : windows_) {
    if (window->editor().Filename() != file || !window->form().Visible()) continue;
    window->form().Show();
    window->form().ZOrder();
    return true;
  }
  EditorWindow& window = make();
  window.form().Show();
  const bool opened = window.editor().OpenImage(file);
  if (!opened) window.form().Unload();
  return opened;
}

void EditorWindows::open(const std::vector<std::string>& files, const Control& owner) {
  std::vector<std::string> first = files;
  if (first.size() > kMostAtOnce) {
    first.resize(kMostAtOnce);
    modProcessing::Platform().UserInterface().MessageBox(
        "You have selected " + ToText(static_cast<std::int32_t>(files.size())) +
            " pictures. The editor opens the first " + ToText(static_cast<std::int32_t>(kMostAtOnce)) +
            " of them.",
        kBoxInformation, {}, owner.hWnd());
  }
  for (const std::string& file : first) open(file);
}

bool EditorWindows::needsTicks() const {
  return std::any_of(windows_.begin(), windows_.end(), [](const auto& window) {
    return window->recovery() && window->recovery()->NeedsTicks();
  });
}

void EditorWindows::tick(std::chrono::steady_clock::time_point now) {
  for (const auto& window : windows_) {
    if (window->recovery()) window->recovery()->Tick(now);
  }
}

}  // namespace kestrel::app
