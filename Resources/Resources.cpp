#include "EmbeddedFiles.h"
#include "Icons.h"
#include "Layouts.h"
#include "StockPicture.h"

namespace kestrel::resources {

std::span<const unsigned char> embeddedFile(std::string_view name) {
  for (const EmbeddedFile& file : embeddedFiles()) {
    if (file.name == name) return file.bytes;
  }
  return {};
}

std::string_view iconSvg(std::string_view name) {
  const auto bytes = embeddedFile(iconFileName(name));
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::span<const std::byte> dialogLayout() { return std::as_bytes(embeddedFile("Dialog.block")); }

std::span<const std::byte> browserLayout() { return std::as_bytes(embeddedFile("Browser.block")); }

std::span<const std::byte> stockPicture() { return std::as_bytes(embeddedFile("stock.png")); }

}  // namespace kestrel::resources
