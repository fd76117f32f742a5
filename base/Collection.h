#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "CaseFolding.h"
#include "Object.h"
#include "RuntimeError.h"
#include "Variant.h"

namespace kestrel {

/// An ordered list, counted from 1, whose elements may have a text as key. Keys ignore case, in all
/// scripts.
template <typename T>
class Collection : public Object {
 public:
  std::string TypeName() const override { return "Collection"; }

  bool Enumerate(const std::function<void(const Variant&)>& visit) const override {
    if constexpr (std::is_constructible_v<Variant, const T&>) {
      for (const T& element : *this) visit(Variant(element));
      return true;
    } else {
      return false;
    }
  }

  std::int32_t Count() const { return static_cast<std::int32_t>(entries_.size()); }

  /// Adds at the end, or before the element `before` (1 to Count). An empty key means no key. Raises 457 for
  /// a key that is in use, 9 for a `before` outside 1 to Count.
  void Add(T element, std::string_view key = {}, std::int32_t before = 0) {
    if (!key.empty() && Find(key) != entries_.end()) {
      throw RuntimeError(err::kDuplicateKey, "The key \"" + std::string(key) + "\" is in use already.");
    }
    const auto position = before == 0 ? entries_.end() : entries_.begin() + Offset(before);
    entries_.insert(position, Entry{std::move(element), FoldCase(key)});
  }

  /// The element at a place, counted from 1 (raises 9), or under a key (raises 5).
  const T& Item(std::int32_t index) const {
    return entries_[static_cast<std::size_t>(Offset(index))].element;
  }
  T& Item(std::int32_t index) { return entries_[static_cast<std::size_t>(Offset(index))].element; }
  const T& Item(std::string_view key) const { return Existing(key)->element; }
  T& Item(std::string_view key) {
    return entries_[static_cast<std::size_t>(Existing(key) - entries_.begin())].element;
  }

  /// Takes an element out, by place (raises 9) or key (raises 5).
  void Remove(std::int32_t index) { entries_.erase(entries_.begin() + Offset(index)); }
  void Remove(std::string_view key) { entries_.erase(Existing(key)); }

  bool Contains(std::string_view key) const { return Find(key) != entries_.end(); }
  void Clear() { entries_.clear(); }

 private:
  struct Entry {
    T element;
    std::string key;  // folded
  };
  using Entries = std::vector<Entry>;

 public:
  /// Walks over the elements in order.
  class ConstIterator {
   public:
    using value_type = T;
    using difference_type = std::ptrdiff_t;

    ConstIterator() = default;
    explicit ConstIterator(typename Entries::const_iterator position) : position_(position) {}
    const T& operator*() const { return position_->element; }
    const T* operator->() const { return &position_->element; }
    ConstIterator& operator++() {
      ++position_;
      return *this;
    }
    ConstIterator operator++(int) { return ConstIterator(position_++); }
    bool operator==(const ConstIterator&) const = default;

   private:
    typename Entries::const_iterator position_;
  };

  ConstIterator begin() const { return ConstIterator(entries_.begin()); }
  ConstIterator end() const { return ConstIterator(entries_.end()); }

 private:
  std::ptrdiff_t Offset(std::int32_t index) const {
    if (index < 1 || index > Count()) {
      throw RuntimeError(err::kSubscript, "There is no element " + std::to_string(index) + ".");
    }
    return index - 1;
  }

  typename Entries::const_iterator Find(std::string_view key) const {
    const std::string wanted = FoldCase(key);
    return std::find_if(entries_.begin(), entries_.end(),
                        [&](const Entry& entry) { return !entry.key.empty() && entry.key == wanted; });
  }

  typename Entries::const_iterator Existing(std::string_view key) const {
    const auto found = Find(key);
    if (found == entries_.end()) {
      throw RuntimeError(err::kInvalidCall, "There is no element with the key \"" + std::string(key) + "\".");
    }
    return found;
  }

  Entries entries_;
};

}  // namespace kestrel
