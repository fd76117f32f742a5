#pragma once

#include <filesystem>
#include <fstream>
#include <string_view>

#include "../store/TemporaryFolder.h"

namespace kestrel::os {

/// A temporary folder in which files are written.
class Folder : public TemporaryFolder {
 public:
  void put(const std::filesystem::path& name, std::string_view content) const {
    std::ofstream(path() / name, std::ios::binary) << content;
  }
};

}  // namespace kestrel::os
