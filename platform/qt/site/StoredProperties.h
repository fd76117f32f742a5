#pragma once

#include <QObject>

#include "imaging/contract/Site.h"

namespace kestrel::qt {

/// The properties of one of our controls as its form stores them: dynamic properties of its widget.
class StoredProperties final : public PropertyBag {
 public:
  explicit StoredProperties(QObject& widget) : widget_(widget) {}

  /// Whether the form stores any.
  bool any() const;

  /// Booleans, whole numbers and texts; of any other type the default is given.
  Variant ReadProperty(const std::string& name, const Variant& defaultValue) const override;
  void WriteProperty(const std::string& name, const Variant& value, const Variant& defaultValue) override;

 private:
  QObject& widget_;
};

}  // namespace kestrel::qt
