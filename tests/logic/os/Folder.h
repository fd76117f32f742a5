#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace kestrel::os {

/// A temporary folder with files. The destructor removes it.
class Folder {
 public:
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-os-XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

  void put(const std::filesystem::path& name, std::string_view content) const {
    std::ofstream(path_ / name, std::ios::binary) << content;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace kestrel::os
