#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Database.h"
#include "platform/store/SectionedStore.h"

namespace kestrel::sqlite {

/// The key store in one SQLite file, which processes may share.
///
/// The file is opened on first use, reopened after a failure, and created by the first write. A read-only
/// file is opened for reading. Not thread-safe: one thread per object.
class SqliteStore : public store::SectionedStore {
 public:
  /// `file` is usually storePath(). An empty path makes an unavailable store.
  explicit SqliteStore(std::filesystem::path file, Patience patience = Patience())
      : file_(std::move(file)), patience_(std::move(patience)) {}

  Variant ReadValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) override;
  bool ReadFailed() const override { return readsFail_; }
  void WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                  const Variant& Value, std::int32_t Kind) override;
  void DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) override;
  void CreateKey(std::int32_t Hive, const std::string& Key) override;
  void AbandonWrite(const RuntimeError& Cause) override;

 protected:
  void beginWrites() override;
  void endWrites(bool store) override;

 private:
  /// The writes that are stored together. The transaction starts with the first of them.
  struct Batch {
    bool begun = false;
    bool changes = false;               ///< whether it has any effect yet
    std::optional<RuntimeError> error;  ///< by which it is lost
  };

  /// The open file, null if it is not open, was deleted or replaced, or is a snapshot.
  Database* current();
  /// The open file, or null if the file does not exist yet. Raises RuntimeError.
  Database* existing();
  /// The open file, created if needed. Raises RuntimeError.
  Database& opened();
  /// The file, in the transaction of the batch if one is open. Raises RuntimeError.
  Database& begun(Database& database);
  /// Runs a part of a write, which returns whether it changed anything; raises its error only if it is the
  /// first of a run of failures.
  void writing(const std::function<bool()>& work);
  /// Closes the file after a failure. The open batch is lost if it had any effect.
  void close(const RuntimeError& cause);

  /// Resets the wait for other processes once neither reads nor writes fail.
  void succeeded();

  std::filesystem::path file_;
  Patience patience_;
  std::unique_ptr<Database> database_;
  bool readsFail_ = false;
  bool writesFail_ = false;
  std::optional<Batch> batch_;
};

}  // namespace kestrel::sqlite
