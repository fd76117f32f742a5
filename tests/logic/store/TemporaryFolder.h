#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace kestrel {

/// A temporary folder for one test. The destructor removes it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = testing::TempDir() + "kestrelXXXXXX";
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("No temporary folder.");
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
  bool isEmpty() const { return std::filesystem::is_empty(path_); }

 private:
  std::filesystem::path path_;
};

}  // namespace kestrel
