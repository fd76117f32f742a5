#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "apps/common/version/Version.h"
#include "base/DescribedError.h"
#include "base/RuntimeError.h"
#include "engine/codecs/CodecTable.h"
#include "platform/os/Paths.h"

// kestrel-info FILE...: prints one line about each picture file. With --png DIR it also writes the pictures
// as PNG. It uses the engine only, no desktop.

namespace {

using namespace kestrel;
namespace fs = std::filesystem;

constexpr char kProgram[] = "kestrel-info";

std::string describe(const engine::Decoded& decoded) {
  const engine::StoredAs& stored = decoded.stored;
  std::string line(engine::codecOf(decoded.format)->name);
  line += ", " + std::to_string(decoded.bitmap.width()) + " x " + std::to_string(decoded.bitmap.height());
  line += ", " + std::to_string(stored.bitsPerSample) + (stored.bitsPerSample == 1 ? " bit" : " bits");
  line += stored.hasAlpha ? ", alpha" : ", no alpha";
  line += ", " + (stored.profile.empty() ? "no profile" : "profile \"" + stored.profile + "\"");
  line += ", orientation " + std::to_string(stored.orientation);
  if (stored.pages > 1) {
    line += ", first of " + std::to_string(stored.pages);
    line += decoded.format == engine::format::kGif ? " frames" : " pages";
  }
  if (!decoded.notice.empty()) line += ", notice: " + decoded.notice;
  return line;
}

/// Writes pictures into a folder under their file's name plus ".png"; refuses a name that was already used.
class PngFolder {
 public:
  explicit PngFolder(fs::path folder) : folder_(std::move(folder)) {}

  void write(const fs::path& file, const engine::Decoded& decoded) {
    const fs::path target = folder_ / (os::textOf(file.filename()) + ".png");
    if (!written_.insert(target).second) {
      throw RuntimeError(err::kFileExists,
                         "Another of the files was written as \"" + os::textOf(target) + "\".");
    }
    engine::encodeFile(decoded.bitmap, decoded.metadata, engine::format::kPng, {}, target);
  }

 private:
  fs::path folder_;
  std::set<fs::path> written_;
};

/// False if the file could not be read or its PNG could not be written.
bool printInfo(const std::string& file, PngFolder* pngs) {
  std::string line;
  bool done = false;
  try {
    const engine::Decoded decoded = engine::decodeFile(file);
    line = describe(decoded);
    if (pngs != nullptr) pngs->write(file, decoded);
    done = true;
  } catch (...) {
    line = "error: " + DescribeCurrentError().Description;
  }
  std::printf("%s: %s\n", file.c_str(), line.c_str());
  return done;
}

int run(int argc, char** argv) {
  CLI::App parser("Prints format, size, depth, alpha, color profile and orientation of picture files.",
                  kProgram);
  std::vector<std::string> files;
  std::string folder;
  parser.add_option("FILE", files, "Picture files")->required();
  parser.add_option("--png", folder, "Write each picture as PNG into this folder")
      ->check(CLI::ExistingDirectory);
  parser.set_version_flag("--version", app::versionText(kProgram));
  CLI11_PARSE(parser, argc, argv);

  PngFolder pngs(folder);
  bool allDone = true;
  for (const std::string& file : files)
    allDone = printInfo(file, folder.empty() ? nullptr : &pngs) && allDone;
  return allDone ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (...) {
    std::fprintf(stderr, "%s: %s\n", kProgram, DescribeCurrentError().Description.c_str());
    return 1;
  }
}
