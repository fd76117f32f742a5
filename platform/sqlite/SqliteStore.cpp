#include "SqliteStore.h"

#include <utility>

namespace kestrel::sqlite {

Variant SqliteStore::ReadValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) {
  try {
    Database* const database = existing();
    Variant value = database == nullptr ? Variant() : database->read(Hive, Key, ValueName);
    readsFail_ = false;
    succeeded();
    return value;
  } catch (const RuntimeError& error) {
    database_.reset();
    if (!std::exchange(readsFail_, true)) Unavailable(error);
    return {};
  }
}

void SqliteStore::WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                             const Variant& Value, std::int32_t Kind) {
  const Variant stored = asStored(Value, Kind);
  writing([&] {
    opened().write(Hive, Key, ValueName, stored);
    writesFail_ = false;
    succeeded();
  });
}

void SqliteStore::DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) {
  writing([&] {
    if (Database* const database = existing()) database->remove(Hive, Key, ValueName);
  });
}

void SqliteStore::CreateKey(std::int32_t Hive, const std::string& Key) { opened().createKey(Hive, Key); }

void SqliteStore::writing(const std::function<void()>& work) {
  try {
    work();
  } catch (const RuntimeError&) {
    database_.reset();
    if (!std::exchange(writesFail_, true)) throw;
  }
}

Database* SqliteStore::current() {
  if (database_ != nullptr && (database_->isSnapshot() || database_->hasMoved())) database_.reset();
  return database_.get();
}

Database* SqliteStore::existing() {
  if (current() == nullptr && !file_.empty()) {
    std::error_code error;
    const auto status = std::filesystem::status(file_, error);
    if (status.type() == std::filesystem::file_type::not_found) return nullptr;
  }
  return &opened();
}

Database& SqliteStore::opened() {
  if (current() != nullptr) return *database_;
  if (file_.empty()) throw RuntimeError(err::kPathNotFound, "There is no folder to keep the settings in.");
  database_ = std::make_unique<Database>(file_, patience_);
  return *database_;
}

void SqliteStore::succeeded() {
  if (!readsFail_ && !writesFail_) patience_.renew();
}

}  // namespace kestrel::sqlite
