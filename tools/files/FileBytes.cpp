#include "FileBytes.h"

#include <fstream>
#include <iterator>

#include "base/RuntimeError.h"

namespace kestrel::tools {

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file) throw RuntimeError(err::kFileNotFound, path + " cannot be read.");
  return bytes;
}

void writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw RuntimeError(err::kDeviceIO, path + " cannot be written.");
}

}  // namespace kestrel::tools
