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

/// Raised by every failing call: a RuntimeError with the number and sentence for SQLite's result code.
[[noreturn]] void raise(sqlite3* connection, int result);

/// A prepared statement, to be run any number of times.
class Statement {
 public:
  Statement(sqlite3* connection, const char* sql);

  Statement& bind(int index, std::int32_t value);
  /// The text must outlive the run.
  Statement& bind(int index, const std::string& value);
  /// A text or a 32-bit number.
  Statement& bind(int index, const Variant& value);

  /// Runs a statement that gives no rows.
  void run();
  /// The first column of the first row: Empty where there is no row, or something else than a text or an
  /// integer of 32 bits, signed or not.
  Variant value();

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  sqlite3* connection_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// How long to wait for other processes that hold a file: about two seconds in all.
class Patience {
 public:
  static constexpr int kPauses = 10'000;

  /// `pause` waits once, by default for 0.2 milliseconds.
  explicit Patience(std::function<void()> pause = sleepBriefly) : pause_(std::move(pause)) {}

  /// Pauses once. False, without a pause, where all are used up.
  bool waitForTurn();
  void renew() { left_ = kPauses; }

 private:
  static void sleepBriefly();

  std::function<void()> pause_;
  int left_ = kPauses;
};

/// An open store file with its tables.
///
/// Each text or number is one row, which holds either the one or the other. What was written is on the disk
/// when the call returns; a process or machine that ends in the middle of a write leaves the older value.
class Database {
 public:
  /// Opens the file, makes it and its folder where it isn't there. A file that can't be written is opened for
  /// reading. The patience must outlive this. Raises RuntimeError.
  Database(const std::filesystem::path& file, Patience& patience);

  /// Whether this reads the file as it was when it was opened, and does not see what others write since: the
  /// only way for a file in a folder where no lock files can be made.
  bool isSnapshot() const { return snapshot_; }
  /// Whether the file is no longer under its name, so that what is written to it would be lost.
  bool hasMoved() const;

  Variant read(std::int32_t hive, const std::string& key, const std::string& name);
  void write(std::int32_t hive, const std::string& key, const std::string& name, const Variant& value);
  void remove(std::int32_t hive, const std::string& key, const std::string& name);
  void createKey(std::int32_t hive, const std::string& key);

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
};

}  // namespace kestrel::sqlite
