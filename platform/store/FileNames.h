#pragma once

#include <cstdint>
#include <string>

#include "imaging/contract/FileHelpers.h"

namespace kestrel::store {

/// The file helpers that use names only.
class FileNames : public FileHelpers {
 public:
  /// `separator` is the path separator of this system.
  explicit FileNames(std::string separator) : separator_(std::move(separator)) {}

  std::string PathWithoutExtension(const std::string& Path) override;
  std::string GetExtension(const std::string& Path, std::int32_t Options = 0) override;
  std::string GetFileName(const std::string& Path) override;
  /// Folders are removed from the middle outward; those nearest to the file are kept longest. A file name
  /// that is too long is truncated at its end. Lengths count characters, not bytes.
  std::string CompactPath(const std::string& Path, std::int32_t Length,
                          const std::string& Separator) override;
  std::string PathSeparator() const override { return separator_; }

 private:
  std::string separator_;
};

}  // namespace kestrel::store
