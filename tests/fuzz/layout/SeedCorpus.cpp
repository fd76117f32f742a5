// Writes the blocks that the fuzzer starts from: kestrel-layout-seeds FOLDER

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "Resources/Layouts.h"
#include "platform/docking/LayoutReader.h"
#include "platform/docking/LayoutWriter.h"

int main(int argc, char** argv) {
  using namespace kestrel;
  if (argc != 2) {
    std::fprintf(stderr, "Usage: kestrel-layout-seeds FOLDER\n");
    return 2;
  }
  docking::StoredLayout layout = docking::readLayout(resources::dialogLayout());
  // One image reaches the same code as forty, and faster.
  layout.images.resize(1);
  for (docking::StoredCommand& command : layout.commands) command.image.clear();
  layout.commands[0].image = layout.images[0].name;
  const auto block = docking::writeLayout(layout);
  std::string bytes(1, '\0');
  bytes.append(reinterpret_cast<const char*>(block.data()), block.size());
  std::ofstream file(std::string(argv[1]) + "/dialog", std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  return file ? 0 : 1;
}
