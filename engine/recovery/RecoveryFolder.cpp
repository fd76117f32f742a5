#include "RecoveryFolder.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

#include "LeftFiles.h"
#include "TakenFile.h"
#include "base/RuntimeError.h"
#include "engine/codecs/FileStore.h"
#include "platform/os/Files.h"
#include "platform/os/Paths.h"

namespace kestrel::engine {
namespace {

namespace fs = std::filesystem;

std::int64_t secondsOf(fs::file_time_type time) {
  const auto system = std::chrono::file_clock::to_sys(time);
  return std::chrono::duration_cast<std::chrono::seconds>(system.time_since_epoch()).count();
}

/// Reads only the beginning of the file.
SnapshotFacts factsOf(const fs::path& path) {
  os::InputFile file;
  std::vector<std::uint8_t> data(kSnapshotPrefix);
  std::size_t filled = 0;
  if (const auto failure = file.open(path)) throw fileError(*failure, path, "cannot be read");
  if (const auto failure = file.read(data, filled)) throw fileError(*failure, path, "cannot be read");
  const std::size_t size = std::min(factsSize(Bytes(data).first(filled)), file.size());
  if (size > kSnapshotPrefix) {
    data.resize(size);
    const auto rest = std::span(data).subspan(kSnapshotPrefix);
    if (const auto failure = file.read(rest, filled)) throw fileError(*failure, path, "cannot be read");
  }
  return readFacts(data);
}

KeptPicture keptIn(const LeftFile& file) {
  KeptPicture kept;
  kept.Id = os::textOf(file.path.filename());
  kept.Seconds = secondsOf(file.written);
  try {
    SnapshotFacts facts = factsOf(file.path);
    kept.Filename = std::move(facts.filename);
    kept.Width = facts.width;
    kept.Height = facts.height;
    kept.Seconds = facts.seconds;
  } catch (const RuntimeError&) {
    kept.Damaged = true;
  }
  return kept;
}

}  // namespace

RecoveryFolder::RecoveryFolder(fs::path folder, RecoveryBounds bounds)
    : folder_(std::move(folder)), bounds_(bounds) {}

std::unique_ptr<RecoveryJournal> RecoveryFolder::CreateJournal() {
  return std::make_unique<Journal>(folder_, bounds_);
}

std::vector<KeptPicture> RecoveryFolder::Kept() {
  std::vector<KeptPicture> kept;
  for (const LeftFile& file : leftFiles(folder_)) kept.push_back(keptIn(file));
  return kept;
}

std::unique_ptr<TakenPicture> RecoveryFolder::Take(const KeptPicture& Kept) {
  const fs::path path = folder_ / os::pathOf(Kept.Id);
  os::OwnedFile file = taken(path);
  const FileContent content = readFile(path);
  return std::make_unique<TakenFile>(std::move(file), unpackSnapshot(content.bytes()).picture);
}

void RecoveryFolder::Delete(const KeptPicture& Kept) {
  const fs::path path = folder_ / os::pathOf(Kept.Id);
  os::OwnedFile file = taken(path);
  if (const auto failure = file.remove()) throw fileError(*failure, path, "cannot be removed");
}

os::OwnedFile RecoveryFolder::taken(const fs::path& path) {
  os::OwnedFile file;
  if (const auto failure = file.take(path)) throw fileError(*failure, path, "cannot be opened");
  return file;
}

}  // namespace kestrel::engine
