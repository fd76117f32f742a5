#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/Numbers.h"
#include "base/RuntimeError.h"

namespace kestrel::docking {

/// A collection of models that it owns, counted from 1 and found by `Model::Name()`, ignoring case.
/// `Collection` is the contract's class.
template <typename Collection, typename Model>
class KeyedModels : public Collection {
 public:
  std::int32_t Count() const override { return static_cast<std::int32_t>(models_.size()); }

  Model& Item(std::int32_t index) override {
    if (index < 1 || index > Count()) {
      throw RuntimeError(err::kSubscript, "There is no element " + std::to_string(index) + '.');
    }
    return *models_[static_cast<std::size_t>(index - 1)];
  }

  Model& Item(const std::string& key) override {
    if (Model* model = find(key)) return *model;
    throw RuntimeError(err::kInvalidCall, "There is no element \"" + key + "\".");
  }

  /// The model of that key, or nullptr.
  Model* find(const std::string& key) const {
    const std::string wanted = LowerCase(key);
    for (const auto& model : models_) {
      if (LowerCase(model->Name()) == wanted) return model.get();
    }
    return nullptr;
  }

  Model& add(std::unique_ptr<Model> model) { return *models_.emplace_back(std::move(model)); }

  const std::vector<std::unique_ptr<Model>>& all() const { return models_; }

 private:
  std::vector<std::unique_ptr<Model>> models_;
};

}  // namespace kestrel::docking
