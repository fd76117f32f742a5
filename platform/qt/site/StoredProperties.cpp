#include "StoredProperties.h"

#include <QVariant>

#include "platform/qt/core/Text.h"

namespace kestrel::qt {
namespace {

QVariant toQtVariant(const Variant& value) {
  switch (static_cast<Variant::Type>(value.TypeCode())) {
    case Variant::Type::kBoolean:
      return value.ToBoolean();
    case Variant::Type::kString:
      return toQt(value.ToString());
    default:
      return value.ToInt32();
  }
}

}  // namespace

bool StoredProperties::any() const {
  // Skip the toolkit's own properties, which begin with an underscore.
  for (const QByteArray& name : widget_.dynamicPropertyNames()) {
    if (!name.startsWith('_')) return true;
  }
  return false;
}

Variant StoredProperties::ReadProperty(const std::string& name, const Variant& defaultValue) const {
  const QVariant stored = widget_.property(name.c_str());
  switch (stored.metaType().id()) {
    case QMetaType::Bool:
      return Variant(stored.toBool());
    case QMetaType::Int:
      return Variant(std::int32_t{stored.toInt()});
    case QMetaType::QString:
      return Variant(fromQt(stored.toString()));
    default:
      return defaultValue;
  }
}

void StoredProperties::WriteProperty(const std::string& name, const Variant& value,
                                     const Variant& /*defaultValue*/) {
  widget_.setProperty(name.c_str(), toQtVariant(value));
}

}  // namespace kestrel::qt
