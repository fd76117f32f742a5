#include "SqliteStore.h"

namespace kestrel::sqlite {

Variant SqliteStore::ReadValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) {
  Database* const database = forReading();
  if (database == nullptr) return {};
  try {
    return database->read(Hive, Key, ValueName);
  } catch (const RuntimeError& error) {
    // A value that is damaged is the caller's matter, a file that can't be read is everybody's.
    if (error.Number() == err::kOverflow || error.Number() == err::kTypeMismatch) throw;
    giveUp(error);
    return {};
  }
}

void SqliteStore::WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                             const Variant& Value, std::int32_t Kind) {
  const Variant stored = asStored(Value, Kind);
  if (Database* const database = forWriting()) database->write(Hive, Key, ValueName, stored);
}

void SqliteStore::DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) {
  if (Database* const database = forReading()) database->remove(Hive, Key, ValueName);
}

void SqliteStore::CreateKey(std::int32_t Hive, const std::string& Key) {
  if (Database* const database = forWriting()) database->createKey(Hive, Key);
}

Database* SqliteStore::forReading() {
  if (database_ != nullptr || unavailable_) return database_.get();
  std::error_code error;
  const auto status = std::filesystem::status(file_, error);
  if (status.type() == std::filesystem::file_type::not_found && !file_.empty()) return nullptr;
  return opened();
}

Database* SqliteStore::forWriting() {
  if (database_ != nullptr || unavailable_) return database_.get();
  return opened();
}

Database* SqliteStore::opened() {
  try {
    if (file_.empty()) throw RuntimeError(err::kPathNotFound, "There is no folder to keep the settings in.");
    database_ = std::make_unique<Database>(file_);
  } catch (const RuntimeError& error) {
    giveUp(error);
  }
  return database_.get();
}

void SqliteStore::giveUp(const RuntimeError& cause) {
  database_.reset();
  unavailable_ = true;
  Unavailable(cause);
}

}  // namespace kestrel::sqlite
