#pragma once

#include <span>
#include <string_view>

#include "base/Catalog.h"

namespace kestrel::translations {

/// The languages with a catalog. English has none: it is the language of the texts in the code.
std::span<const CatalogTable> catalogTables();

/// The table for a locale, such as "de", "de_AT.UTF-8" or "de-AT"; null for a language without a catalog.
const CatalogTable* catalogTableOf(std::string_view locale);

}  // namespace kestrel::translations
