#pragma once

#include <string>
#include <utility>
#include <vector>

#include "../Window.h"
#include "base/RuntimeError.h"
#include "imaging/contract/controls/ComboBox.h"

namespace kestrel::headless {

class ComboBox final : public WindowOf<kestrel::ComboBox> {
 public:
  struct Entry {
    std::string text;
    std::int32_t data = 0;
  };

  using WindowOf::WindowOf;

  void entries(std::vector<Entry> value) { entries_ = std::move(value); }

  std::int32_t ListCount() const override { return static_cast<std::int32_t>(entries_.size()); }
  std::string List(std::int32_t index) const override { return entry(index).text; }
  std::int32_t ItemData(std::int32_t index) const override { return entry(index).data; }
  std::int32_t ListIndex() const override { return index_; }
  void ListIndex(std::int32_t value) override {
    if (value < -1 || value >= ListCount()) {
      throw RuntimeError(err::kInvalidPropertyValue, "The list has no entry " + std::to_string(value) + ".");
    }
    if (value == index_) return;
    index_ = value;
    Click();
  }

 private:
  const Entry& entry(std::int32_t index) const {
    if (index < 0 || index >= ListCount()) {
      throw RuntimeError(381, "The list has no entry " + std::to_string(index) + ".");
    }
    return entries_[static_cast<std::size_t>(index)];
  }

  std::vector<Entry> entries_;
  std::int32_t index_ = -1;
};

}  // namespace kestrel::headless
