#include "SectionedStore.h"

namespace kestrel::store {
namespace {

Variant::Type typeOf(std::int32_t kind) {
  switch (kind) {
    case kStoreString:
      return Variant::Type::kString;
    case kStoreNumber:
      return Variant::Type::kInt32;
    default:
      throw RuntimeError(err::kInvalidCall, "The key store holds texts and numbers only.");
  }
}

}  // namespace

Variant SectionedStore::GetSetting(const std::string& ValueName, const Variant& Default, std::int32_t Kind,
                                   const std::string& Section, std::int32_t Hive, const std::string& Root) {
  const Variant stored = ReadValue(Hive, keyOf(Section, Root), ValueName);
  return stored.TypeCode() == static_cast<std::int32_t>(typeOf(Kind)) ? stored : Default;
}

void SectionedStore::SetSetting(const std::string& ValueName, const Variant& Value, std::int32_t Kind,
                                const std::string& Section, std::int32_t Hive, const std::string& Root) {
  WriteValue(Hive, keyOf(Section, Root), ValueName, Value, Kind);
}

void SectionedStore::BeginBatch() {
  if (batches_++ > 0) return;
  batchIsDropped_ = false;
  beginWrites();
}

void SectionedStore::EndBatch(bool Commit) {
  batchIsDropped_ = batchIsDropped_ || !Commit;
  if (--batches_ > 0) return;
  endWrites(!batchIsDropped_);
  if (Commit && batchIsDropped_) {
    AbandonWrite(RuntimeError(err::kDeviceIO, "The settings could not be written: a part of them failed."));
  }
}

Variant SectionedStore::asStored(const Variant& value, std::int32_t kind) {
  if (typeOf(kind) == Variant::Type::kString) return value.ToString();
  return value.ToInt32();
}

std::string SectionedStore::keyOf(const std::string& section, const std::string& root) const {
  return (root.empty() ? rootKey_ : root) + "\\" + section;
}

}  // namespace kestrel::store
