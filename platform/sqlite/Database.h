#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "base/Variant.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kestrel::sqlite {

/// Raises a RuntimeError with the number and sentence for SQLite's result code; every failing call ends here.
[[noreturn]] void raise(sqlite3* connection, int result);

/// A prepared statement, reusable.
class Statement {
 public:
  Statement(sqlite3* connection, const char* sql);

  Statement& bind(int index, std::int32_t value);
  /// The text must outlive the run.
  Statement& bind(int index, const std::string& value);
  /// A text or a 32-bit number.
  Statement& bind(int index, const Variant& value);

  /// Runs a statement without result rows.
  void run();
  /// The first column of the first row: Empty if there is no row, or if it is neither a text nor a 32-bit
  /// integer, signed or unsigned.
  Variant value();

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  sqlite3* connection_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// The wait for other processes that hold a file: about two seconds in all.
class Patience {
 public:
  static constexpr int kPauses = 10'000;

  /// `pause` waits once, by default for 0.2 milliseconds.
  explicit Patience(std::function<void()> pause = sleepBriefly) : pause_(std::move(pause)) {}

  /// Pauses once. Returns false without a pause when all pauses are used up.
  bool waitForTurn();
  void renew() { left_ = kPauses; }

 private:
  static void sleepBriefly();

  std::function<void()> pause_;
  int left_ = kPauses;
};

/// An open store file with its tables.
///
/// Each value is one row, which holds a text or a number. Writes are durable when the call returns, those of
/// a transaction when `commit` returns; a process or machine that ends before leaves the old values.
class Database {
 public:
  /// Opens the file; creates it and its folder if needed. A file that cannot be written is opened for
  /// reading. `patience` must outlive this object. Raises RuntimeError.
  Database(const std::filesystem::path& file, Patience& patience);

  /// Whether this reads the file as of its opening and does not see later writes: the only way for a file in
  /// a folder where no lock files can be created.
  bool isSnapshot() const { return snapshot_; }
  /// Whether the file was moved or deleted, so that writes to it would be lost.
  bool hasMoved() const;

  Variant read(std::int32_t hive, const std::string& key, const std::string& name);
  void write(std::int32_t hive, const std::string& key, const std::string& name, const Variant& value);
  /// Whether there was such a value.
  bool remove(std::int32_t hive, const std::string& key, const std::string& name);
  void createKey(std::int32_t hive, const std::string& key);

  /// Starts a transaction, which other processes can't write in. It ends with `commit` or with this object,
  /// which drops its writes; after a failure it can't be committed.
  void begin();
  void commit();

 private:
  struct Close {
    void operator()(sqlite3* connection) const;
  };
  struct Statements;
  struct StatementsDeleter {
    void operator()(Statements* statements) const;
  };
  std::unique_ptr<sqlite3, Close> connection_;
  std::unique_ptr<Statements, StatementsDeleter> statements_;
  bool snapshot_ = false;
  bool transaction_ = false;  ///< started by `begin`
};

}  // namespace kestrel::sqlite
