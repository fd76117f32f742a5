#include "Site.h"

#include <utility>

#include "BagOfProperties.h"

namespace kestrel::headless {

Site::Site(Desktop& desktop, Window* parent, std::string name, bool userMode)
    : WindowOf(desktop, parent, std::move(name), -1), userMode_(userMode) {}

void Site::initialize(const std::vector<std::pair<std::string, bool>>& stored) {
  if (stored.empty()) {
    InitProperties();
    return;
  }
  BagOfProperties bag;
  for (const auto& [name, value] : stored) bag.WriteProperty(name, value, false);
  ReadProperties(bag);
}

void Site::containerLaidOut() {
  if (!isShown()) return;
  if (!std::exchange(shown_, true)) Show();
  layOutChildren();
}

void Site::Visible(bool value) {
  if (value == visible()) return;
  visible(value);
  if (value) {
    Show();
  } else {
    Hide();
  }
}

void Site::pressKey(std::int32_t keyCode, std::int32_t shift, std::int32_t character) {
  KeyDown(keyCode, shift);
  if (character != 0) KeyPress(character);
  KeyUp(keyCode, shift);
}

void Site::acceptFiles(bool value) {
  if (std::exchange(acceptsFiles_, value) != value) AcceptsFilesChanged();
}

bool Site::dropFile(const std::string& name) {
  bool taken = false;
  if (acceptsFiles_) QueryFileDrop(taken);
  if (taken) FileDrop(name);
  return taken;
}

}  // namespace kestrel::headless
