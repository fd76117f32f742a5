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
    close(error);
    if (!std::exchange(readsFail_, true)) {
      Unavailable(error);
      // A report may have read the store with success.
      readsFail_ = true;
    }
    return {};
  }
}

void SqliteStore::WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                             const Variant& Value, std::int32_t Kind) {
  const Variant stored = asStored(Value, Kind);
  writing([&] {
    begun(opened()).write(Hive, Key, ValueName, stored);
    return true;
  });
}

void SqliteStore::DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) {
  writing([&] {
    Database* const database = existing();
    return database != nullptr && begun(*database).remove(Hive, Key, ValueName);
  });
}

void SqliteStore::CreateKey(std::int32_t Hive, const std::string& Key) {
  try {
    begun(opened()).createKey(Hive, Key);
  } catch (const RuntimeError& error) {
    close(error);
    throw;
  }
}

void SqliteStore::AbandonWrite(const RuntimeError& Cause) {
  if (!std::exchange(writesFail_, true)) throw Cause;
}

void SqliteStore::beginWrites() { batch_ = Batch(); }

void SqliteStore::endWrites(bool store) {
  const Batch batch = std::move(*batch_);
  batch_.reset();
  if (!store) {
    if (batch.begun) database_.reset();
    return;
  }
  writing([&] {
    if (batch.error) throw RuntimeError(*batch.error);
    if (batch.begun) database_->commit();
    return batch.changes;
  });
}

Database& SqliteStore::begun(Database& database) {
  if (batch_ && !batch_->begun) {
    database.begin();
    batch_->begun = true;
  }
  return database;
}

void SqliteStore::writing(const std::function<bool()>& work) {
  try {
    if (batch_ && batch_->error) throw RuntimeError(*batch_->error);
    const bool changed = work();
    if (batch_) {
      batch_->changes = batch_->changes || changed;
    } else if (changed) {
      writesFail_ = false;
      succeeded();
    }
  } catch (const RuntimeError& error) {
    close(error);
    if (batch_) batch_->error = error;
    AbandonWrite(error);
  }
}

void SqliteStore::close(const RuntimeError& cause) {
  database_.reset();
  if (!batch_) return;
  batch_->begun = false;
  if (batch_->changes) batch_->error = cause;
}

Database* SqliteStore::current() {
  if (batch_ && batch_->begun) return database_.get();
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
