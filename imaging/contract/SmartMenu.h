#pragma once

#include <cstdint>
#include <string>

namespace kestrel {

/// One entry of a smart item.
class SmartSubItem {
 public:
  virtual ~SmartSubItem() = default;
  /// Its place among its siblings.
  virtual std::int32_t Index() const = 0;
  virtual void Tag(const std::string& value) = 0;
  virtual void Description(const std::string& value) = 0;
  /// 1 shown, 0 hidden.
  virtual void Visibility(std::int32_t value) = 0;
};

/// A menu that is made of items with sub-items, each under a key.
class SmartMenu {
 public:
  virtual ~SmartMenu() = default;
  /// Null if there is no such sub-item.
  virtual SmartSubItem* SubItem(const std::string& item, const std::string& key) = 0;
  virtual SmartSubItem& AddSubItem(const std::string& item, std::int32_t position, const std::string& key,
                                   const std::string& caption) = 0;
  virtual void RemoveSubItem(const std::string& item, const std::string& key) = 0;
};

}  // namespace kestrel
