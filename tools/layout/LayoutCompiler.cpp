// Compiles a text layout and the icons that it names into the block that the docking suite reads:
// kestrel-layout-compiler SOURCE ICON_FOLDER OUT

#include <cstdio>

#include "LayoutSource.h"
#include "Resources/Icons.h"
#include "base/RuntimeError.h"
#include "platform/docking/LayoutWriter.h"
#include "tools/files/FileBytes.h"
#include "tools/icons/IconPainter.h"

namespace {

using namespace kestrel;

constexpr int kPictureSize = 16;

docking::StoredPicture pictureOf(const QImage& image) {
  docking::StoredPicture picture{image.width(), image.height(), {}};
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QRgb pixel = image.pixel(x, y);
      for (const int channel : {qRed(pixel), qGreen(pixel), qBlue(pixel)}) {
        picture.rgb.push_back(static_cast<std::uint8_t>(channel));
      }
    }
  }
  return picture;
}

void compile(const std::string& source, const std::string& iconFolder, const std::string& target) {
  docking::StoredLayout layout = tools::parseLayoutSource(tools::readFile(source));
  for (docking::StoredImage& image : layout.images) {
    const auto svg =
        QByteArray::fromStdString(tools::readFile(iconFolder + '/' + resources::iconFileName(image.name)));
    const QColor transparent(image.transparent & 0xFF, image.transparent >> 8 & 0xFF,
                             image.transparent >> 16 & 0xFF);
    image.normal = pictureOf(tools::paintOpaqueIcon(svg, kPictureSize, false, transparent));
    image.disabled = pictureOf(tools::paintOpaqueIcon(svg, kPictureSize, true, transparent));
  }
  const auto block = docking::writeLayout(layout);
  tools::writeFile(target, std::string(reinterpret_cast<const char*>(block.data()), block.size()));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "Usage: kestrel-layout-compiler SOURCE ICON_FOLDER OUT\n");
    return 2;
  }
  try {
    compile(argv[1], argv[2], argv[3]);
    return 0;
  } catch (const RuntimeError& error) {
    std::fprintf(stderr, "%s: %s\n", argv[1], error.what());
    return 1;
  }
}
