#include <iostream>

#include <kestrel/base/RuntimeError.h>
#include <kestrel/engine/codecs/Codecs.h>
#include <kestrel/engine/effects/Flip.h>

// engine_host IN OUT: mirrors a picture, reads it again and compares. An error of the engine is caught as its
// type.
int main(int argc, char** argv) {
  using namespace kestrel::engine;
  if (argc != 3) return 2;
  const Decoded decoded = decodeFile(argv[1]);
  const Bitmap mirrored = flip(decoded.bitmap, FlipDirection::LeftToRight);
  encodeFile(mirrored, decoded.metadata, 0, {}, argv[2]);
  const Bitmap read = decodeFile(argv[2]).bitmap;
  const bool same = read.width() == decoded.bitmap.width() &&
                    read.at(0, 0) == decoded.bitmap.at(decoded.bitmap.width() - 1, 0);

  bool refused = false;
  try {
    decodeFile("no such picture");
  } catch (const kestrel::RuntimeError& error) {
    refused = error.Number() == 53;
  }
  std::cout << read.width() << " x " << read.height() << "\n";
  return same && refused ? 0 : 1;
}
