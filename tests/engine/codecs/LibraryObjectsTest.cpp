// The codecs destroy the objects of the libraries when memory runs out. The functions that create and destroy
// these are replaced here by ones that count and can fail.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <png.h>
#include <tiffio.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include "FailingAllocator.h"
#include "base/RuntimeError.h"
#include "engine/codecs/png/Png.h"
#include "engine/codecs/tiff/Tiff.h"

namespace {

int pngObjects = 0;  ///< created and not yet destroyed
int tiffImages = 0;
bool infoFails = false;

/// The library's own function.
template <typename Function>
Function* original(Function*, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
#define ORIGINAL(name) original(&name, #name)

}  // namespace

extern "C" {

png_structp png_create_read_struct_2(png_const_charp version, png_voidp errors, png_error_ptr raise,
                                     png_error_ptr warn, png_voidp memory, png_malloc_ptr allocate,
                                     png_free_ptr free) {
  ++pngObjects;
  return ORIGINAL(png_create_read_struct_2)(version, errors, raise, warn, memory, allocate, free);
}

png_structp png_create_write_struct(png_const_charp version, png_voidp errors, png_error_ptr raise,
                                    png_error_ptr warn) {
  ++pngObjects;
  return ORIGINAL(png_create_write_struct)(version, errors, raise, warn);
}

png_infop png_create_info_struct(png_const_structrp png) {
  return infoFails ? nullptr : ORIGINAL(png_create_info_struct)(png);
}

void png_destroy_read_struct(png_structpp png, png_infopp info, png_infopp end) {
  if (*png != nullptr) --pngObjects;
  ORIGINAL(png_destroy_read_struct)(png, info, end);
}

void png_destroy_write_struct(png_structpp png, png_infopp info) {
  if (*png != nullptr) --pngObjects;
  ORIGINAL(png_destroy_write_struct)(png, info);
}

int TIFFRGBAImageBegin(TIFFRGBAImage* image, TIFF* tiff, int stop, char* reason) {
  const int begun = ORIGINAL(TIFFRGBAImageBegin)(image, tiff, stop, reason);
  tiffImages += begun;
  return begun;
}

void TIFFRGBAImageEnd(TIFFRGBAImage* image) {
  --tiffImages;
  ORIGINAL(TIFFRGBAImageEnd)(image);
}

}  // extern "C"

namespace kestrel::engine {
namespace {

template <typename Call>
std::int32_t raisedBy(const Call& call) {
  try {
    call();
    return 0;
  } catch (const RuntimeError& error) {
    return error.Number();
  }
}

TEST(LibraryObjects, OfAPngAreDestroyedIfTheSecondCannotBeCreated) {
  const Bitmap picture = Bitmap::filled(4, 3, Pixel{1, 2, 3, 255});
  const std::vector<std::uint8_t> file = png::encode(picture, {}, {});
  EXPECT_EQ(pngObjects, 0);
  infoFails = true;
  EXPECT_EQ(raisedBy([&] { png::encode(picture, {}, {}); }), err::kOutOfMemory);
  EXPECT_EQ(pngObjects, 0) << "after encoding";
  EXPECT_EQ(raisedBy([&] { png::decode(file); }), err::kOutOfMemory);
  EXPECT_EQ(pngObjects, 0) << "after decoding";
  infoFails = false;
  EXPECT_EQ(png::decode(file).bitmap.width(), 4);
  EXPECT_EQ(pngObjects, 0);
}

/// A file in YCbCr, which the library converts.
std::vector<std::uint8_t> ycbcrTiff() {
  const std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("kestrel_" + std::to_string(getpid()) + "_objects.tif");
  TIFF* const tiff = TIFFOpen(path.c_str(), "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 8);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_YCBCR);
  TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, 1, 1);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 8);
  std::vector<std::uint8_t> row(24, 128);
  for (std::uint32_t y = 0; y < 8; ++y) TIFFWriteScanline(tiff, row.data(), y, 0);
  TIFFClose(tiff);
  std::ifstream stream(path, std::ios::binary);
  std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(stream), {}};
  std::filesystem::remove(path);
  return bytes;
}

TEST(LibraryObjects, OfATiffAreDestroyedIfMemoryRunsOutAtAnyAllocation) {
  const std::vector<std::uint8_t> file = ycbcrTiff();
  int failures = 0;
  for (bool done = false; !done;) {
    test::failAllocationsAfter(failures);
    try {
      tiff::decode(file);
      done = true;
    } catch (const std::bad_alloc&) {
    } catch (const RuntimeError&) {
    }
    test::failAllocationsAfter(-1);
    ASSERT_EQ(tiffImages, 0) << "with " << failures << " allocations";
    if (!done) ++failures;
  }
  EXPECT_GT(failures, 3);
}

}  // namespace
}  // namespace kestrel::engine
