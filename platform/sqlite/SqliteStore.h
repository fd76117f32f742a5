#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "Database.h"
#include "platform/store/SectionedStore.h"

namespace kestrel::sqlite {

/// The key store in one SQLite file, which processes may share.
///
/// The file is opened when it is first needed, and made by the first write. It belongs to one thread.
class SqliteStore : public store::SectionedStore {
 public:
  /// `file` is usually storePath(). An empty one makes a store that is unavailable.
  explicit SqliteStore(std::filesystem::path file) : file_(std::move(file)) {}

  Variant ReadValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) override;
  void WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                  const Variant& Value, std::int32_t Kind) override;
  void DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) override;
  void CreateKey(std::int32_t Hive, const std::string& Key) override;

 private:
  /// The open file, or null where there is none to read, or none that can be used.
  Database* forReading();
  Database* forWriting();
  Database* opened();
  void giveUp(const RuntimeError& cause);

  std::filesystem::path file_;
  std::unique_ptr<Database> database_;
  bool unavailable_ = false;
};

}  // namespace kestrel::sqlite
