#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "imaging/contract/Moorage.h"
#include "platform/docking/LayoutReader.h"

namespace kestrel::docking {

/// The expected texts of a button.
struct ButtonTexts {
  const char* key;
  const char* caption;
  const char* shortCaption;
  const char* description;
  const char* category;
  const char* image;
};

/// A menu, its entries as by `lineOf`.
struct MenuRow {
  const char* key;
  const char* caption;
  const char* entries;
};

inline const StoredCommand& commandOf(const StoredLayout& layout, const std::string& key) {
  const auto& all = layout.commands;
  const auto found = std::find_if(all.begin(), all.end(), [&](const auto& one) { return one.key == key; });
  if (found == all.end()) throw std::out_of_range(key);
  return *found;
}

/// The entries in one line, with a + before an entry that begins a group.
inline std::string lineOf(const std::vector<StoredEntry>& entries) {
  std::string text;
  for (const StoredEntry& entry : entries) {
    if (!text.empty()) text += ' ';
    text += (entry.beginGroup ? "+" : "") + entry.command;
  }
  return text;
}

inline void expectButton(const StoredCommand& stored, const ButtonTexts& texts) {
  EXPECT_EQ(stored.type, kCommandButton);
  EXPECT_EQ(stored.caption, texts.caption);
  EXPECT_EQ(stored.shortCaption, texts.shortCaption);
  EXPECT_EQ(stored.description, texts.description);
  EXPECT_EQ(stored.category, texts.category);
  EXPECT_EQ(stored.image, texts.image);
}

inline void expectMenu(const StoredCommand& stored, const MenuRow& row) {
  EXPECT_EQ(stored.type, kCommandMenu);
  EXPECT_EQ(stored.caption, row.caption);
  EXPECT_EQ(stored.category, "Built-in Menus");
  EXPECT_EQ(lineOf(stored.menu), row.entries);
  EXPECT_TRUE(stored.visible);
  EXPECT_TRUE(stored.hotKeys.empty());
}

}  // namespace kestrel::docking
