#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "engine/codecs/Codecs.h"

namespace kestrel::engine {
namespace {

namespace fs = std::filesystem;

struct Ended {
  std::string output;
  int status = -1;
};

Ended runInfo(const std::string& arguments) {
  Ended run;
  FILE* const pipe = popen((std::string(KESTREL_INFO) + " " + arguments).c_str(), "r");
  std::array<char, 4096> part{};
  while (const std::size_t count = std::fread(part.data(), 1, part.size(), pipe))
    run.output.append(part.data(), count);
  run.status = WEXITSTATUS(pclose(pipe));
  return run;
}

class InfoTest : public testing::Test {
 protected:
  InfoTest()
      : folder_(fs::temp_directory_path() / ("kestrel_info_" + std::to_string(std::random_device{}()))) {
    fs::create_directories(folder_ / "out");
    encodeFile(Bitmap::filled(30, 20, {9, 8, 7, 255}), {}, format::kJpg, {}, folder_ / "photo.jpg");
    encodeFile(Bitmap::filled(3, 2, {9, 8, 7, 66}), {}, format::kPng, {}, folder_ / "drawing.png");
    std::ofstream(folder_ / "words.png") << "no picture";
  }
  ~InfoTest() override { fs::remove_all(folder_); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  fs::path folder_;
};

TEST_F(InfoTest, PrintsALineForEachFile) {
  const Ended run = runInfo(path("photo.jpg") + " " + path("drawing.png"));
  EXPECT_EQ(run.output, path("photo.jpg") + ": JPEG, 30 x 20, 8 bits, no alpha, no profile, orientation 1\n" +
                            path("drawing.png") + ": PNG, 3 x 2, 8 bits, alpha, no profile, orientation 1\n");
  EXPECT_EQ(run.status, 0);
}

TEST_F(InfoTest, AFileThatFailsSetsExitCode1AndTheOthersAreStillDone) {
  const Ended run = runInfo(path("words.png") + " " + path("missing.png") + " " + path("photo.jpg"));
  EXPECT_EQ(run.output, path("words.png") + ": error: The file is not a PNG image: no PNG signature.\n" +
                            path("missing.png") + ": error: The file \"" + path("missing.png") +
                            "\" cannot be read: it does not exist.\n" + path("photo.jpg") +
                            ": JPEG, 30 x 20, 8 bits, no alpha, no profile, orientation 1\n");
  EXPECT_EQ(run.status, 1);
}

TEST_F(InfoTest, WritesTheDecodedPictureAsPng) {
  const Ended run = runInfo("--png " + path("out") + " " + path("photo.jpg") + " " + path("drawing.png"));
  EXPECT_EQ(run.status, 0);
  const Decoded drawing = decodeFile(folder_ / "out" / "drawing.png.png");
  EXPECT_EQ(drawing.format, format::kPng);
  EXPECT_EQ(drawing.bitmap.at(2, 1), (Pixel{9, 8, 7, 66}));
  EXPECT_EQ(decodeFile(folder_ / "out" / "photo.jpg.png").bitmap.width(), 30);
}

TEST_F(InfoTest, FailsWithoutFilesOrWithAnInvalidFolder) {
  EXPECT_NE(runInfo("2>/dev/null").status, 0);
  EXPECT_NE(runInfo("--png " + path("nowhere") + " " + path("photo.jpg") + " 2>/dev/null").status, 0);
}

}  // namespace
}  // namespace kestrel::engine
