#pragma once

#include <string>

#include "imaging/contract/RegistryStore.h"

namespace kestrel::store {

/// Implements the settings of a key store, sections below a root, on the four operations on plain keys, and
/// batches inside batches on a single one.
class SectionedStore : public RegistryStore {
 public:
  std::int32_t RootHive() const override { return rootHive_; }
  void RootHive(std::int32_t value) override { rootHive_ = value; }
  std::string RootKey() const override { return rootKey_; }
  void RootKey(const std::string& value) override { rootKey_ = value; }

  Variant GetSetting(const std::string& ValueName, const Variant& Default, std::int32_t Kind,
                     const std::string& Section, std::int32_t Hive, const std::string& Root = {}) override;
  void SetSetting(const std::string& ValueName, const Variant& Value, std::int32_t Kind,
                  const std::string& Section, std::int32_t Hive, const std::string& Root = {}) override;
  /// For stores whose reads can't fail.
  bool ReadFailed() const override { return false; }
  /// For stores that know no runs of failures.
  void AbandonWrite(const RuntimeError& Cause) override { throw Cause; }

  void BeginBatch() final;
  void EndBatch(bool Commit) final;

 protected:
  /// Starts a batch; called again only after its end.
  virtual void beginWrites() = 0;
  /// Ends the batch: stores its writes, or drops them. Raises RuntimeError only if they are to be stored.
  virtual void endWrites(bool store) = 0;

  /// The value converted to the kind: a 32-bit number or a text. Raises 6 or 13 if it cannot be converted, 5
  /// for an unknown kind.
  static Variant asStored(const Variant& value, std::int32_t kind);

 private:
  std::string keyOf(const std::string& section, const std::string& root) const;

  std::int32_t rootHive_ = HKEY_CURRENT_USER;
  std::string rootKey_;
  int batches_ = 0;              ///< open ones, each inside the one before
  bool batchIsDropped_ = false;  ///< one of them ended without a commit
};

}  // namespace kestrel::store
