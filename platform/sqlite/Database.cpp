#include "Database.h"

#include <sqlite3.h>

#include <chrono>
#include <limits>
#include <thread>

#include "base/RuntimeError.h"
#include "platform/os/Paths.h"

namespace kestrel::sqlite {
namespace {

// A value is either a number or a text. Keys are unique ignoring case.
constexpr char kSetUp[] = R"(
PRAGMA journal_mode = WAL;
PRAGMA synchronous = FULL;
CREATE TABLE IF NOT EXISTS StoreKey (
  id INTEGER PRIMARY KEY,
  hive INTEGER NOT NULL,
  path TEXT NOT NULL COLLATE NOCASE,
  UNIQUE (hive, path));
CREATE TABLE IF NOT EXISTS StoreValue (
  key INTEGER NOT NULL REFERENCES StoreKey (id),
  name TEXT NOT NULL COLLATE NOCASE,
  number INTEGER,
  text TEXT,
  PRIMARY KEY (key, name),
  CHECK ((number IS NULL) <> (text IS NULL))) WITHOUT ROWID;
)";

constexpr char kRead[] =
    "SELECT coalesce(number, text) FROM StoreValue "
    "WHERE key = (SELECT id FROM StoreKey WHERE hive = ?1 AND path = ?2) AND name = ?3";
constexpr char kWrite[] =
    "INSERT INTO StoreValue (key, name, number, text) "
    "SELECT id, ?3, ?4, ?5 FROM StoreKey WHERE hive = ?1 AND path = ?2 "
    "ON CONFLICT (key, name) DO UPDATE SET number = excluded.number, text = excluded.text";
constexpr char kRemove[] =
    "DELETE FROM StoreValue "
    "WHERE key = (SELECT id FROM StoreKey WHERE hive = ?1 AND path = ?2) AND name = ?3";
constexpr char kCreateKey[] = "INSERT INTO StoreKey (hive, path) VALUES (?1, ?2) ON CONFLICT DO NOTHING";

std::int32_t numberOf(int result) {
  switch (result & 0xFF) {
    case SQLITE_FULL:
      return err::kDiskFull;
    case SQLITE_NOMEM:
      return err::kOutOfMemory;
    case SQLITE_PERM:
    case SQLITE_READONLY:
    case SQLITE_AUTH:
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return err::kPermissionDenied;
    case SQLITE_CANTOPEN:
      return err::kPathFileAccess;
    default:
      return err::kDeviceIO;
  }
}

bool isInUse(int result) { return (result & 0xFF) == SQLITE_BUSY || (result & 0xFF) == SQLITE_LOCKED; }

void check(sqlite3* connection, int result) {
  if (result != SQLITE_OK) raise(connection, result);
}

sqlite3* openConnection(const std::string& name, int flags) {
  sqlite3* connection = nullptr;
  const int result = sqlite3_open_v2(name.c_str(), &connection, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  if (result == SQLITE_OK) return connection;
  const RuntimeError error(numberOf(result),
                           "The settings could not be opened: " + std::string(sqlite3_errstr(result)) + ".");
  sqlite3_close(connection);
  throw error;
}

sqlite3* open(const std::filesystem::path& file) {
  std::error_code ignored;  // the open below fails again and reports the error
  if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path(), ignored);
  return openConnection(os::textOf(file), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
}

/// Opens the file as immutable, which needs no lock files in its folder.
sqlite3* openSnapshot(const std::filesystem::path& file) {
  std::string uri = "file:";
  for (const char c : os::textOf(std::filesystem::absolute(file))) {
    if (c == '?' || c == '#' || c == '%') {
      constexpr char kDigits[] = "0123456789ABCDEF";
      uri += {'%', kDigits[c >> 4], kDigits[c & 0xF]};
    } else {
      uri += c;
    }
  }
  return openConnection(uri + "?immutable=1", SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
}

/// Whether the file can be opened as a snapshot after the set-up failed with that result: it is read-only
/// here, and all writes are merged into it.
bool allowsSnapshot(const std::filesystem::path& file, int result) {
  if ((result & 0xFF) != SQLITE_READONLY && (result & 0xFF) != SQLITE_CANTOPEN) return false;
  std::error_code missing;
  const std::uintmax_t unmerged = std::filesystem::file_size(os::pathOf(os::textOf(file) + "-wal"), missing);
  return missing || unmerged == 0;
}

int waitFor(void* patience, int /*attempts*/) { return static_cast<Patience*>(patience)->waitForTurn(); }

/// Creates the tables of a new file. If several processes do so at once, the change of the journal mode fails
/// for the later ones without waiting; retrying is safe.
int setUp(sqlite3* connection, Patience& patience) {
  int result = SQLITE_OK;
  do {
    result = sqlite3_exec(connection, kSetUp, nullptr, nullptr, nullptr);
  } while ((result & 0xFF) == SQLITE_BUSY && patience.waitForTurn());
  return result;
}

}  // namespace

bool Patience::waitForTurn() {
  if (left_ == 0) return false;
  --left_;
  pause_();
  return true;
}

void Patience::sleepBriefly() {
  // SQLite's own waiting grows to a tenth of a second, in which a busy writer comes back so often that the
  // others would hardly ever find the file free.
  std::this_thread::sleep_for(std::chrono::microseconds(200));
}

void raise(sqlite3* connection, int result) {
  if (isInUse(result)) {
    throw RuntimeError(numberOf(result),
                       "The settings could not be read or written: another program keeps them locked.");
  }
  throw RuntimeError(numberOf(result), "The settings could not be read or written: " +
                                           std::string(sqlite3_errmsg(connection)) + ".");
}

Statement::Statement(sqlite3* connection, const char* sql) : connection_(connection) {
  sqlite3_stmt* statement = nullptr;
  check(connection, sqlite3_prepare_v3(connection, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
  statement_.reset(statement);
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }

Statement& Statement::bind(int index, std::int32_t value) {
  check(connection_, sqlite3_bind_int(statement_.get(), index, value));
  return *this;
}

Statement& Statement::bind(int index, const std::string& value) {
  check(connection_, sqlite3_bind_text(statement_.get(), index, value.data(), static_cast<int>(value.size()),
                                       SQLITE_STATIC));
  return *this;
}

Statement& Statement::bind(int index, const Variant& value) {
  if (value.TypeCode() == static_cast<std::int32_t>(Variant::Type::kInt32))
    return bind(index, value.ToInt32());
  const std::string text = value.ToString();
  check(connection_, sqlite3_bind_text(statement_.get(), index, text.data(), static_cast<int>(text.size()),
                                       SQLITE_TRANSIENT));
  return *this;
}

void Statement::run() {
  sqlite3_step(statement_.get());
  // The reset of a failed statement returns its error again, with its message.
  const int result = sqlite3_reset(statement_.get());
  sqlite3_clear_bindings(statement_.get());
  check(connection_, result);
}

Variant Statement::value() {
  struct Reset {
    sqlite3_stmt* statement;
    ~Reset() { sqlite3_reset(statement); }
  } const reset{statement_.get()};

  const int result = sqlite3_step(statement_.get());
  if (result == SQLITE_DONE) return {};
  if (result != SQLITE_ROW) raise(connection_, result);
  switch (sqlite3_column_type(statement_.get(), 0)) {
    case SQLITE_INTEGER: {
      const sqlite3_int64 number = sqlite3_column_int64(statement_.get(), 0);
      // Unsigned 32-bit numbers, as other programs may write them, have the same bits.
      if (number < std::numeric_limits<std::int32_t>::min() ||
          number > std::numeric_limits<std::uint32_t>::max()) {
        return {};
      }
      return static_cast<std::int32_t>(number);
    }
    case SQLITE_TEXT: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), 0));
      return std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), 0)));
    }
    default:
      return {};
  }
}

struct Database::Statements {
  explicit Statements(sqlite3* connection)
      : read(connection, kRead),
        write(connection, kWrite),
        remove(connection, kRemove),
        createKey(connection, kCreateKey),
        begin(connection, "BEGIN IMMEDIATE"),
        commit(connection, "COMMIT"),
        rollback(connection, "ROLLBACK") {}

  Statement read, write, remove, createKey, begin, commit, rollback;
};

void Database::StatementsDeleter::operator()(Statements* statements) const { delete statements; }
void Database::Close::operator()(sqlite3* connection) const { sqlite3_close(connection); }

Database::Database(const std::filesystem::path& file, Patience& patience) : connection_(open(file)) {
  sqlite3_busy_handler(connection_.get(), waitFor, &patience);
  const int result = setUp(connection_.get(), patience);
  snapshot_ = allowsSnapshot(file, result);
  if (snapshot_) {
    connection_.reset(openSnapshot(file));
  } else {
    check(connection_.get(), result);
  }
  statements_.reset(new Statements(connection_.get()));
}

bool Database::hasMoved() const {
  int moved = 0;
  return sqlite3_file_control(connection_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK &&
         moved != 0;
}

Variant Database::read(std::int32_t hive, const std::string& key, const std::string& name) {
  return statements_->read.bind(1, hive).bind(2, key).bind(3, name).value();
}

void Database::write(std::int32_t hive, const std::string& key, const std::string& name,
                     const Variant& value) {
  const bool isNumber = value.TypeCode() == static_cast<std::int32_t>(Variant::Type::kInt32);
  const bool single = !transaction_;
  if (single) statements_->begin.run();
  try {
    createKey(hive, key);
    statements_->write.bind(1, hive).bind(2, key).bind(3, name).bind(isNumber ? 4 : 5, value).run();
    if (single) statements_->commit.run();
  } catch (const RuntimeError&) {
    if (single && sqlite3_get_autocommit(connection_.get()) == 0) statements_->rollback.run();
    throw;
  }
}

bool Database::remove(std::int32_t hive, const std::string& key, const std::string& name) {
  statements_->remove.bind(1, hive).bind(2, key).bind(3, name).run();
  return sqlite3_changes(connection_.get()) > 0;
}

void Database::begin() {
  statements_->begin.run();
  transaction_ = true;
}

void Database::commit() {
  statements_->commit.run();
  transaction_ = false;
}

void Database::createKey(std::int32_t hive, const std::string& key) {
  statements_->createKey.bind(1, hive).bind(2, key).run();
}

}  // namespace kestrel::sqlite
