#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "base/Event.h"
#include "base/RuntimeError.h"
#include "base/Variant.h"

namespace kestrel {

/// The hive of the user's settings.
inline constexpr std::int32_t HKEY_CURRENT_USER = static_cast<std::int32_t>(0x80000001);

/// The kinds of a stored value.
inline constexpr std::int32_t kStoreString = 1;
inline constexpr std::int32_t kStoreNumber = 4;  ///< 32 bits

/// The per-user key store: typed values, each addressed by hive, key and value name. One per process.
///
/// Keys are paths with the separator "\"; keys and value names ignore case. A value has one kind at a time; a
/// read of the other kind does not find it. Reading creates nothing. Values are converted to their kind when
/// they are written: True is the number -1.
///
/// A store that cannot be opened or read behaves as an empty one: reads find nothing, and `Unavailable`
/// reports the cause. Each later call tries again. `ReadFailed` distinguishes an unreadable store from an
/// empty one. A stored value that is neither a text nor a 32-bit number, as another program may have written
/// it, is not found. A store that can be read but not written fails its writes only.
///
/// A failing write raises RuntimeError (57, 61, 70, 75 or 76). In a run of failures only the first call
/// raises; the next write that changes the store ends the run. So the user is notified once that settings are
/// being lost, not at each setting.
///
/// Calls wait up to about two seconds in all for other processes that hold the store; after that they fail at
/// once until one succeeds.
class RegistryStore {
 public:
  virtual ~RegistryStore() = default;

  /// Where the settings are: hive, and the key above the sections.
  virtual std::int32_t RootHive() const = 0;
  virtual void RootHive(std::int32_t value) = 0;
  virtual std::string RootKey() const = 0;
  virtual void RootKey(const std::string& value) = 0;

  /// The value of a section (a key below the root), or `Default` if there is none of that kind. An empty
  /// `Root` means `RootKey`.
  virtual Variant GetSetting(const std::string& ValueName, const Variant& Default, std::int32_t Kind,
                             const std::string& Section, std::int32_t Hive, const std::string& Root = {}) = 0;
  /// Writes a value of a section; creates the section if needed.
  virtual void SetSetting(const std::string& ValueName, const Variant& Value, std::int32_t Kind,
                          const std::string& Section, std::int32_t Hive, const std::string& Root = {}) = 0;

  /// A value of either kind, Empty if there is none. The empty name is the key's default value.
  virtual Variant ReadValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) = 0;
  /// Whether the last `ReadValue` or `GetSetting` failed, so a value that was not found may exist.
  virtual bool ReadFailed() const = 0;
  virtual void WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                          const Variant& Value, std::int32_t Kind) = 0;
  /// Does nothing if there is no such value, and then ends no run of failures. Fails as a write does.
  virtual void DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) = 0;
  /// Does nothing if the key exists. Every failing call raises and does not count toward a run: a caller that
  /// ignores the error gets the one of the write that follows.
  virtual void CreateKey(std::int32_t Hive, const std::string& Key) = 0;

  /// For a write that the caller has to give up: raises `Cause` as a failing write does, so once per run.
  virtual void AbandonWrite(const RuntimeError& Cause) = 0;

  /// For StoreBatch, which describes it. Each call of `BeginBatch` needs one of `EndBatch`. `EndBatch` raises
  /// only if `Commit` is true.
  virtual void BeginBatch() = 0;
  virtual void EndBatch(bool Commit) = 0;

  /// Raised by a read that fails, once per run of failing reads.
  Event<const RuntimeError&> Unavailable;
};

/// The writes of a scope, stored together: all of them at `Commit`, or none if the store can't write one of
/// them or the scope ends without a commit. Other programs see all or none too, even if this one is killed in
/// between.
///
/// Reads in the scope find what was written in it. A batch inside another one is a part of it. Other programs
/// can't write from the first write of a batch to its end, so no user may be asked in between.
class [[nodiscard]] StoreBatch {
 public:
  explicit StoreBatch(RegistryStore& store) : store_(&store) { store.BeginBatch(); }
  ~StoreBatch() {
    if (store_ != nullptr) store_->EndBatch(false);
  }
  StoreBatch(const StoreBatch&) = delete;
  StoreBatch& operator=(const StoreBatch&) = delete;

  /// Stores the writes; the last call on this object. Fails as a write does.
  void Commit() { std::exchange(store_, nullptr)->EndBatch(true); }

 private:
  RegistryStore* store_;
};

}  // namespace kestrel
