#include "Catalogs.h"

#include <algorithm>

namespace kestrel::translations {

const CatalogTable* catalogTableOf(std::string_view locale) {
  const std::string_view language = locale.substr(0, locale.find_first_of("_-.@"));
  const std::span<const CatalogTable> tables = catalogTables();
  const auto found = std::find_if(tables.begin(), tables.end(),
                                  [&](const CatalogTable& table) { return table.language == language; });
  return found == tables.end() ? nullptr : &*found;
}

}  // namespace kestrel::translations
