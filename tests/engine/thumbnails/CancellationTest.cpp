#include "engine/parallel/Cancellation.h"

#include <unistd.h>

#include <filesystem>
#include <stop_token>
#include <thread>

#include "../codecs/TestPictures.h"
#include "engine/thumbnails/Thumbnails.h"

namespace kestrel::engine {
namespace {

std::stop_token stopped() {
  std::stop_source source;
  source.request_stop();
  return source.get_token();
}

TEST(Cancellation, IsOfTheThreadAndOfTheInnermostToken) {
  EXPECT_NO_THROW(checkCanceled());
  {
    const Cancelable outer(stopped());
    EXPECT_THROW(checkCanceled(), Canceled);
    {
      const Cancelable inner{std::stop_token()};
      EXPECT_NO_THROW(checkCanceled());
    }
    EXPECT_THROW(checkCanceled(), Canceled);
    std::thread([] { EXPECT_FALSE(isCanceled()); }).join();
  }
  EXPECT_NO_THROW(checkCanceled());
}

TEST(Cancellation, EndsTheDecoderOfEachFormat) {
  const Bitmap picture = test::noise(64, 48, true);
  for (const FileFormat& format : kFileFormats) {
    if (!format.Writable) continue;
    const std::vector<std::uint8_t> file = encode(picture, {}, format.Code);
    EXPECT_NO_THROW(decode(file)) << format.Name;
    const Cancelable cancelable(stopped());
    EXPECT_THROW(decode(file), Canceled) << format.Name;
  }
}

TEST(Cancellation, EndsAReducedJpegDecoder) {
  const auto folder = std::filesystem::temp_directory_path() / ("kestrel-cancel-" + std::to_string(getpid()));
  std::filesystem::create_directories(folder);
  const auto file = folder / "a.jpg";
  encodeFile(test::noise(640, 480, true), {}, format::kJpg, {}, file);
  for (const std::int32_t side : {40, 80, 160, 640}) {
    EXPECT_THROW(readThumbnail(file, side, stopped()), Canceled) << side;
    EXPECT_NO_THROW(readThumbnail(file, side)) << side;
  }
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace kestrel::engine
