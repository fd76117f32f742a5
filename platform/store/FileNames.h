#pragma once

#include <cstdint>
#include <string>

#include "imaging/contract/FileHelpers.h"

namespace kestrel::store {

/// The half of the file helpers that looks at names alone.
class FileNames : public FileHelpers {
 public:
  /// `separator` is what separates the steps of a path on this system.
  explicit FileNames(std::string separator) : separator_(std::move(separator)) {}

  std::string PathWithoutExtension(const std::string& Path) override;
  std::string GetExtension(const std::string& Path, std::int32_t Options = 0) override;
  std::string GetFileName(const std::string& Path) override;
  /// Folders are left out from the middle outwards, those nearest to the file staying longest. A name that is
  /// too long by itself is cut at its end. Lengths count characters, not bytes.
  std::string CompactPath(const std::string& Path, std::int32_t Length,
                          const std::string& Separator) override;
  std::string PathSeparator() const override { return separator_; }

 private:
  std::string separator_;
};

}  // namespace kestrel::store
