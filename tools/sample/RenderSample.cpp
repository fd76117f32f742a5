// Renders the sample picture: kestrel-render-sample WIDTH HEIGHT FILE

#include <cstdlib>
#include <exception>
#include <iostream>

#include "Scenery.h"
#include "engine/codecs/Codecs.h"

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "Usage: kestrel-render-sample WIDTH HEIGHT FILE\n";
    return 2;
  }
  try {
    const auto bitmap = kestrel::sample::renderScenery(std::atoi(argv[1]), std::atoi(argv[2]));
    kestrel::engine::encodeFile(bitmap, {}, kestrel::engine::format::kNone, {.jpegQuality = 88}, argv[3]);
  } catch (const std::exception& error) {
    std::cerr << "error: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
