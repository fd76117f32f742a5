#pragma once

#include <QObject>

#include "imaging/contract/Site.h"

namespace kestrel::qt {

/// The properties of one of our controls as its form stores them: dynamic properties of its widget.
class StoredProperties final : public PropertyBag {
 public:
  explicit StoredProperties(QObject& widget) : widget_(widget) {}

  /// Whether the form stores any property.
  bool any() const;

  /// Supports booleans, integers and texts; returns the default for any other type.
  Variant ReadProperty(const std::string& name, const Variant& defaultValue) const override;
  void WriteProperty(const std::string& name, const Variant& value, const Variant& defaultValue) override;

 private:
  QObject& widget_;
};

}  // namespace kestrel::qt
