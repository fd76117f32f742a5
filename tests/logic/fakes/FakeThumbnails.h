#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/RuntimeError.h"
#include "imaging/contract/ThumbnailView.h"

namespace kestrel {

class FakeThumbnail final : public Thumbnail {
 public:
  FakeThumbnail(std::string filename, std::int32_t index) : filename_(std::move(filename)), index_(index) {}
  std::string Filename() const override { return filename_; }
  std::int32_t Index() const override { return index_; }

 private:
  std::string filename_;
  std::int32_t index_;
};

class FakeThumbnails final : public Thumbnails {
 public:
  std::int32_t Count() const override { return static_cast<std::int32_t>(thumbnails_.size()); }
  Thumbnail& Item(std::int32_t index) override {
    ++items;
    if (index < 1 || index > Count()) throw RuntimeError(err::kSubscript, "No such thumbnail.");
    return *thumbnails_[static_cast<std::size_t>(index) - 1];
  }

  void files(const std::vector<std::string>& names) {
    thumbnails_.clear();
    for (const std::string& name : names) {
      thumbnails_.push_back(std::make_unique<FakeThumbnail>(name, Count() + 1));
    }
  }

  int items = 0;  ///< calls of `Item`

 private:
  std::vector<std::unique_ptr<FakeThumbnail>> thumbnails_;
};

}  // namespace kestrel
