// The trash standard 1.0 of freedesktop.org: https://specifications.freedesktop.org/trash-spec/1.0/

#include "Trash.h"

#include <time.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

#include "Counting.h"
#include "FreeName.h"
#include "platform/os/Entries.h"
#include "platform/os/OwnedFile.h"
#include "platform/os/Paths.h"

namespace kestrel::transfer {
namespace {

namespace fs = std::filesystem;
using os::EntryType;
using os::FileProblem;

constexpr std::string_view kInfoExtension = ".trashinfo";

/// Percent-encoded as in URLs (RFC 2396), with the separators of folders as they are.
std::string encoded(std::string_view text) {
  constexpr std::string_view kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_.!~*'()/";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string result;
  for (const char c : text) {
    if (kPlain.find(c) != std::string_view::npos) {
      result += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    result += '%';
    result += kDigits[byte >> 4];
    result += kDigits[byte & 15];
  }
  return result;
}

/// "2004-08-31T22:32:08", local time.
std::string now() {
  const std::time_t time = std::time(nullptr);
  std::tm local{};
  localtime_r(&time, &local);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &local)};
}

/// Whether the user's own folder is there; made if it was missing. A link could lead anywhere.
bool isOwnFolder(const fs::path& folder) {
  os::makeFolder(folder);
  os::EntryFacts facts;
  return !os::readFacts(folder, facts) && facts.type == EntryType::kFolder && facts.owner == os::userNumber();
}

/// A trash folder, and how it records where an entry was.
struct TrashFolder {
  fs::path path;
  fs::path top;  ///< paths are relative to it; empty for the home trash, which has absolute ones

  std::string infoOf(const fs::path& entry) const {
    const fs::path place = top.empty() ? entry : entry.lexically_relative(top);
    return "[Trash Info]\nPath=" + encoded(os::textOf(place)) + "\nDeletionDate=" + now() + "\n";
  }
};

/// Of a folder, so that others can show the size of the trash without reading it all. Only a cache: failures
/// do no harm.
void recordSize(const TrashFolder& trash, const fs::path& trashed, const fs::path& info,
                const std::function<bool()>& canceled) {
  os::EntryFacts facts;
  if (os::readFacts(info, facts)) return;
  const std::optional<std::uint64_t> space = spaceOf(trashed, canceled);
  if (!space) return;
  const fs::path cache = trash.path / "directorysizes";
  std::ifstream before(cache, std::ios::binary);
  std::string lines{std::istreambuf_iterator<char>(before), std::istreambuf_iterator<char>()};
  if (!lines.empty() && lines.back() != '\n') lines += '\n';
  const auto seconds = std::chrono::floor<std::chrono::seconds>(facts.modified).time_since_epoch().count();
  lines += std::to_string(*space) + " " + std::to_string(seconds) + " " +
           encoded(os::textOf(trashed.filename())) + "\n";
  os::replaceFile(cache, {reinterpret_cast<const std::uint8_t*>(lines.data()), lines.size()});
}

/// What a trash folder did with an entry.
enum class Put {
  kDone,
  kFailed,
  kImpossible,  ///< in this trash
  kOtherDisk,
};

/// `absolute` is the entry's path without links above it.
Put put(const TrashFolder& trash, const fs::path& absolute, const os::EntryFacts& facts,
        const std::function<bool()>& canceled, TrashResult& result) {
  const fs::path files = trash.path / "files";
  const fs::path infos = trash.path / "info";
  if (!isOwnFolder(files) || !isOwnFolder(infos)) return Put::kImpossible;
  fs::path name = fittingName(absolute.filename(), kInfoExtension.size());
  for (int number = 2;; ++number) {
    fs::path info = infos / name;
    info += kInfoExtension;
    // The information first: its name reserves that of the entry.
    auto failure = os::writeNewFile(info, trash.infoOf(absolute));
    if (!failure) {
      failure = os::moveEntry(absolute, files / name);
      if (!failure) {
        if (facts.type == EntryType::kFolder) recordSize(trash, files / name, info, canceled);
        return Put::kDone;
      }
      os::removeFile(info);
    }
    switch (failure->problem) {
      case FileProblem::kExists:
        name = numberedName(absolute.filename(), number, kInfoExtension.size());
        break;
      case FileProblem::kOtherDisk:
        return Put::kOtherDisk;
      case FileProblem::kDiskFull:
      case FileProblem::kQuota:
        result.failure = failure;
        return Put::kImpossible;
      default:
        result.failure = failure;
        return Put::kFailed;
    }
  }
}

/// The topmost folder of the file system.
fs::path topOf(const fs::path& entry, std::uint64_t disk) {
  fs::path top = entry.parent_path();
  for (;;) {
    const fs::path above = top.parent_path();
    os::EntryFacts facts;
    if (above == top || os::readFacts(above, facts) || facts.id.device != disk) return top;
    top = above;
  }
}

/// The administrator's folder for the trash of all users. Everybody can write to it, so the standard orders
/// to check that nobody has replaced it, and that only owners can remove what is in it.
bool isSafeForAll(const fs::path& folder) {
  os::EntryFacts facts;
  return !os::readFacts(folder, facts) && facts.type == EntryType::kFolder && facts.sticky;
}

Put putAtTop(const fs::path& absolute, const os::EntryFacts& facts, const std::function<bool()>& canceled,
             TrashResult& result) {
  const fs::path top = topOf(absolute, facts.id.device);
  const std::string user = std::to_string(os::userNumber());
  if (const fs::path shared = top / ".Trash"; isSafeForAll(shared) && isOwnFolder(shared / user)) {
    const Put end = put({shared / user, top}, absolute, facts, canceled, result);
    if (end == Put::kDone || end == Put::kFailed) return end;
  }
  const fs::path own = top / (".Trash-" + user);
  return isOwnFolder(own) ? put({own, top}, absolute, facts, canceled, result) : Put::kImpossible;
}

/// Whether the home trash is in that file system, or would be if it could be made. The user may have put it
/// elsewhere by a link.
bool isHomeDisk(fs::path folder, std::uint64_t disk) {
  for (; !folder.empty(); folder = folder.parent_path()) {
    std::error_code error;
    const fs::path target = fs::canonical(folder, error);
    os::EntryFacts facts;
    if (!error && !os::readFacts(target, facts)) return facts.id.device == disk;
    if (folder == folder.parent_path()) break;
  }
  return false;
}

}  // namespace

fs::path homeTrash() {
  const auto variable = [](const char* name) {
    const char* const value = std::getenv(name);
    return fs::path(value == nullptr ? "" : value);
  };
  // By the base directory standard a relative path is to be ignored.
  if (const fs::path data = variable("XDG_DATA_HOME"); data.is_absolute()) return data / "Trash";
  const fs::path home = variable("HOME");
  return home.is_absolute() ? home / ".local/share/Trash" : fs::path();
}

TrashResult moveToTrash(const fs::path& path, const fs::path& homeTrash,
                        const std::function<bool()>& canceled) {
  os::EntryFacts facts;
  if (const auto failure = os::readFacts(path, facts)) return {true, failure};
  std::error_code error;
  const fs::path whole = fs::absolute(path, error);
  const fs::path folder = error ? fs::path() : fs::canonical(whole.parent_path(), error);
  if (error) return {true, os::FileFailure{FileProblem::kOther, error.value()}};
  const fs::path absolute = folder / whole.filename();
  TrashResult result;
  // The standard leaves it open to copy files of other file systems to the home trash: that takes long, and
  // the user would not expect it of a deletion.
  Put end = Put::kOtherDisk;
  if (isHomeDisk(homeTrash, facts.id.device)) {
    os::makePrivateFolder(homeTrash);
    end = put({homeTrash, {}}, absolute, facts, canceled, result);
  }
  if (end == Put::kOtherDisk) end = putAtTop(absolute, facts, canceled, result);
  result.hasTrash = end == Put::kDone || end == Put::kFailed;
  // One trash may have had no room, and another one took the entry.
  if (end == Put::kDone) result.failure.reset();
  return result;
}

}  // namespace kestrel::transfer
