#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ContractTest.h"
#include "TreeUser.h"

namespace kestrel::contract {

class Trees : public ContractTest {
 protected:
  void SetUp() override {
    ContractTest::SetUp();
    user_ = user().treeUser();
  }
  void TearDown() override {
    user_.reset();
    ContractTest::TearDown();
  }
  TreeUser& hand() { return *user_; }
  TreeView& tree() { return user_->tree(); }
  TreeNodes& nodes() { return tree().Nodes(); }
  TreeNode& node(const std::string& key) { return nodes().Item(key); }
  TreeNode& add(const std::string& above, const std::string& key) {
    return nodes().Add(above, above.empty() ? kTreeLast : kTreeChild, key, key);
  }
  /// a with the children a1 (with the child a11) and a2, and b.
  void addSome() {
    add("", "a");
    add("a", "a1");
    add("a", "a2");
    add("a1", "a11");
    add("", "b");
  }
  /// The shown nodes of these, from top to bottom.
  std::vector<std::string> inOrder(std::vector<std::string> keys) {
    std::sort(keys.begin(), keys.end(), [this](const std::string& one, const std::string& other) {
      return user_->placeOf(one).y < user_->placeOf(other).y;
    });
    return keys;
  }
  std::string selectedKey() {
    const TreeNode* const selected = tree().SelectedItem();
    return selected ? selected->Key() : "none";
  }
  void record() {
    const auto plain = [&](Event<>& event, const char* name) {
      connections_.push_back(event.Connect([this, name] { log_.emplace_back(name); }));
    };
    const auto ofNode = [&](Event<TreeNode&>& event, const char* name) {
      connections_.push_back(event.Connect(
          [this, name](const TreeNode& raised) { log_.push_back(name + (" " + raised.Key())); }));
    };
    const auto mouse = [&](Event<std::int32_t, std::int32_t, float, float>& event, const char* name) {
      connections_.push_back(
          event.Connect([this, name](std::int32_t button, std::int32_t shift, float, float) {
            log_.push_back(name + (" " + std::to_string(button)) + " " + std::to_string(shift));
          }));
    };
    plain(tree().Click, "Click");
    plain(tree().DblClick, "DblClick");
    ofNode(tree().Expand, "Expand");
    ofNode(tree().Collapse, "Collapse");
    ofNode(tree().NodeClick, "NodeClick");
    ofNode(tree().NodeCheck, "NodeCheck");
    mouse(tree().MouseDown, "MouseDown");
    mouse(tree().MouseUp, "MouseUp");
  }
  std::vector<std::string> events() { return std::exchange(log_, {}); }

 private:
  std::unique_ptr<TreeUser> user_;
  std::vector<std::string> log_;
  std::vector<Connection> connections_;
};

}  // namespace kestrel::contract
