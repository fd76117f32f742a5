#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "imaging/contract/TreeView.h"
#include "imaging/contract/controls/PictureBox.h"

namespace kestrel::contract {

/// A visible tree of a platform, 240 by 400, and the actions of its user.
class TreeUser {
 public:
  virtual ~TreeUser() = default;

  virtual TreeView& tree() = 0;
  /// The hidden picture for icons on the same surface.
  virtual PictureBox& icon() = 0;

  // Nodes are named by key and must be visible. The mouse acts at the middle of their texts.
  virtual void press(const std::string& key, std::int32_t button, std::int32_t shift) = 0;
  /// Where the button was pressed.
  virtual void release(std::int32_t button, std::int32_t shift) = 0;
  /// A press and a release of the left button, and a second press that follows as a double click.
  virtual void doubleClick(const std::string& key) = 0;
  virtual void clickSign(const std::string& key) = 0;
  virtual void clickCheckBox(const std::string& key) = 0;
  virtual void clickBelowTheNodes(std::int32_t button) = 0;
  /// Presses and releases a key while the tree has the focus.
  virtual void pressKey(std::int32_t keyCode, std::int32_t shift = 0) = 0;
  virtual void typeLetter(char letter) = 0;

  struct Place {
    float x = 0;
    float y = 0;
  };
  virtual Place placeOf(const std::string& key) = 0;
  /// Whether all nodes above it are expanded.
  virtual bool isShown(const std::string& key) = 0;

  void click(const std::string& key, std::int32_t button = kLeftButton, std::int32_t shift = 0) {
    press(key, button, shift);
    release(button, shift);
  }
};

}  // namespace kestrel::contract
