#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "imaging/contract/Moorage.h"

namespace kestrel::docking {

/// The lines of one combo or list command.
class CommandItemsModel : public CommandItems {
 public:
  /// `updated` is called after every change.
  explicit CommandItemsModel(std::function<void()> updated) : updated_(std::move(updated)) {}

  std::int32_t Count() const override { return static_cast<std::int32_t>(items_.size()); }
  const CommandItem& Item(std::int32_t index) const override;
  void Add(const std::string& text, const std::string& key) override;
  void Clear() override;

 private:
  std::function<void()> updated_;
  std::vector<CommandItem> items_;
};

}  // namespace kestrel::docking
