#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "Journal.h"
#include "imaging/contract/Recovery.h"

namespace kestrel::engine {

/// The kept pictures in a folder, one file each. A file with an owner belongs to a living editor of this or
/// another process, and is not offered.
class RecoveryFolder final : public RecoveryStore {
 public:
  /// The folder is made when the first picture is kept.
  explicit RecoveryFolder(std::filesystem::path folder, RecoveryBounds bounds = {});

  std::unique_ptr<RecoveryJournal> CreateJournal() override;
  std::vector<KeptPicture> Kept() override;
  std::unique_ptr<TakenPicture> Take(const KeptPicture& Kept) override;
  void Delete(const KeptPicture& Kept) override;

 private:
  os::OwnedFile taken(const std::filesystem::path& path);

  std::filesystem::path folder_;
  RecoveryBounds bounds_;
};

}  // namespace kestrel::engine
