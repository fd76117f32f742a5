#pragma once

#include <cstdint>
#include <string>

#include "base/Event.h"
#include "base/RuntimeError.h"
#include "base/Variant.h"

namespace kestrel {

/// The hive of what belongs to the user.
inline constexpr std::int32_t HKEY_CURRENT_USER = static_cast<std::int32_t>(0x80000001);

/// The kinds of a stored value.
inline constexpr std::int32_t kStoreString = 1;
inline constexpr std::int32_t kStoreNumber = 4;  ///< 32 bits

/// The per-user key store: typed values, each addressed by hive, key and value name. One per process.
///
/// Keys are paths whose steps are separated by "\"; keys and value names ignore case. A value has one kind at
/// a time, and a read that asks for the other kind does not find it. Reading creates nothing. Values are
/// converted to their kind when they are written: True is the number -1.
///
/// A store that can't be opened or read behaves as an empty one: reads find nothing, and `Unavailable`
/// reports the cause. Each later call tries again. Callers that must not take an unreadable store for an
/// empty one ask `ReadFailed`. A stored value that is neither a text nor a 32-bit number, as another program
/// may have left it, is not found. A store that may be read but not written fails its writes only.
///
/// A failing write raises RuntimeError (57, 61, 70, 75 or 76). Of a run of failures only the first call
/// raises; the run ends with the next value that is written. So a user is warned once, not at each setting,
/// that settings are being lost.
///
/// Calls wait for other processes that hold the store, about two seconds in all; after that they fail at once
/// until one succeeds.
class RegistryStore {
 public:
  virtual ~RegistryStore() = default;

  /// Where the settings are: hive, and the key above the sections.
  virtual std::int32_t RootHive() const = 0;
  virtual void RootHive(std::int32_t value) = 0;
  virtual std::string RootKey() const = 0;
  virtual void RootKey(const std::string& value) = 0;

  /// The value of a section (a key below the root), or `Default` where there is none of that kind. An empty
  /// `Root` means `RootKey`.
  virtual Variant GetSetting(const std::string& ValueName, const Variant& Default, std::int32_t Kind,
                             const std::string& Section, std::int32_t Hive, const std::string& Root = {}) = 0;
  /// Writes a value of a section, which is made if need be.
  virtual void SetSetting(const std::string& ValueName, const Variant& Value, std::int32_t Kind,
                          const std::string& Section, std::int32_t Hive, const std::string& Root = {}) = 0;

  /// A value of either kind, Empty where there is none. The empty name is the key's default value.
  virtual Variant ReadValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) = 0;
  /// Whether the latest `ReadValue` or `GetSetting` failed, so that a value may be stored that it did not
  /// find.
  virtual bool ReadFailed() const = 0;
  virtual void WriteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName,
                          const Variant& Value, std::int32_t Kind) = 0;
  /// Does nothing where there is no such value. Fails as a write does.
  virtual void DeleteValue(std::int32_t Hive, const std::string& Key, const std::string& ValueName) = 0;
  /// Does nothing where the key exists. Each failing call raises, and is no part of a run: a caller that does
  /// without the key is told by the write that follows.
  virtual void CreateKey(std::int32_t Hive, const std::string& Key) = 0;

  /// Raised by a read that fails, once per run of failing reads.
  Event<const RuntimeError&> Unavailable;
};

}  // namespace kestrel
