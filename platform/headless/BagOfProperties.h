#pragma once

#include <map>
#include <string>

#include "imaging/contract/Site.h"

namespace kestrel::headless {

/// A property bag in memory. It keeps every value and its default in writing order.
class BagOfProperties final : public PropertyBag {
 public:
  struct Entry {
    std::string name;
    Variant value;
    Variant defaultValue;
  };

  Variant ReadProperty(const std::string& name, const Variant& defaultValue) const override {
    reads_.push_back({name, {}, defaultValue});
    for (const Entry& entry : entries_) {
      if (entry.name == name) return entry.value;
    }
    return defaultValue;
  }
  void WriteProperty(const std::string& name, const Variant& value, const Variant& defaultValue) override {
    std::erase_if(entries_, [&](const Entry& entry) { return entry.name == name; });
    entries_.push_back({name, value, defaultValue});
  }

  const std::vector<Entry>& entries() const { return entries_; }
  /// The reads so far, in order.
  const std::vector<Entry>& reads() const { return reads_; }

 private:
  std::vector<Entry> entries_;
  mutable std::vector<Entry> reads_;
};

}  // namespace kestrel::headless
