#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>

namespace kestrel::transfer {

struct Count {
  std::uint64_t files = 0;
  std::uint64_t bytes = 0;
};

/// The files of a tree and their bytes; of what cannot be read there are none. `canceled` true ends it.
Count countTree(const std::filesystem::path& path, const std::function<bool()>& canceled);

/// The space on the disk that a tree takes, in bytes; none if it was canceled.
std::optional<std::uint64_t> spaceOf(const std::filesystem::path& path,
                                     const std::function<bool()>& canceled);

}  // namespace kestrel::transfer
