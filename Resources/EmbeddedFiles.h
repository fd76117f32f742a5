#pragma once

#include <span>
#include <string_view>

namespace kestrel::resources {

struct EmbeddedFile {
  std::string_view name;
  std::span<const unsigned char> bytes;
};

/// The files embedded in the program.
std::span<const EmbeddedFile> embeddedFiles();

/// The bytes of the file of that name, empty if there is none.
std::span<const unsigned char> embeddedFile(std::string_view name);

}  // namespace kestrel::resources
