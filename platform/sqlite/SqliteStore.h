#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "Database.h"
#include "platform/store/SectionedStore.h"

namespace kestrel::sqlite {

/// The key store in one SQLite file, which processes may share.
///
/// The file is opened when it is first needed, again after a failure, and made by the first write. A file
/// that the user may only read is opened for reading. The store belongs to one thread.
class SqliteStore : public store::SectionedStore {
 public:
  /// `file` is usually storePath(). An empty one makes a store that is unavailable.
  explicit SqliteStore(std::filesystem::path file, Patience patience = Patience())
      : file_(std::move(file)), patience_(std::move(patience)) {}

  Variant ReadValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) override;
  bool ReadFailed() const override { return readsFail_; }
  void WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                  const Variant& Value, std::int32_t Kind) override;
  void DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) override;
  void CreateKey(std::int32_t Hive, const std::string& Key) override;

 private:
  /// The open file, null where it is not open, was deleted or replaced since, or is a snapshot.
  Database* current();
  /// The open file, or null where there is no file yet. Raises RuntimeError.
  Database* existing();
  /// The open file, made if need be. Raises RuntimeError.
  Database& opened();
  /// Does a part of a write; raises its error only where it is the first of its run.
  void writing(const std::function<void()>& work);

  /// Renews the patience with other processes once neither reads nor writes fail any more.
  void succeeded();

  std::filesystem::path file_;
  Patience patience_;
  std::unique_ptr<Database> database_;
  bool readsFail_ = false;
  bool writesFail_ = false;
};

}  // namespace kestrel::sqlite
