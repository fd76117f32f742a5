#include "FileSystem.h"

#include <cctype>
#include <filesystem>
#include <utility>

#include "base/Numbers.h"
#include "platform/os/Paths.h"

namespace kestrel::headless {
namespace {

namespace fs = std::filesystem;

/// The entry of that name, ignoring case; the name itself if there is none.
fs::path storedSpelling(const fs::path& folder, const std::string& name) {
  std::error_code error;
  if (fs::exists(folder / name, error)) return folder / name;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    if (EqualIgnoringCase(os::textOf(entry->path().filename()), name)) return entry->path();
  }
  return folder / name;
}

bool hasDrive(const std::string& path) { return path.size() >= 2 && path[1] == ':'; }

}  // namespace

FileSystem::FileSystem(PathStyle pathStyle, std::string scratch, std::vector<Drive> drives)
    : pathStyle_(pathStyle), scratch_(std::move(scratch)) {
  this->drives(std::move(drives));
}

void FileSystem::drives(std::vector<Drive> value) {
  drives_ = std::move(value);
  if (pathStyle_ == PathStyle::kSlash) return;
  for (const Drive& drive : drives_)
    fs::create_directories(fs::path(scratch_) / std::string(1, drive.letter));
}

const Drive* FileSystem::driveOf(const std::string& path) const {
  if (pathStyle_ == PathStyle::kSlash || !hasDrive(path)) return nullptr;
  for (const Drive& drive : drives_) {
    if (EqualIgnoringCase(std::string(1, drive.letter), path.substr(0, 1))) return &drive;
  }
  return nullptr;
}

std::string FileSystem::scratch() const {
  return pathStyle_ == PathStyle::kSlash ? scratch_ : std::string(1, drives_.front().letter) + ":\\scratch";
}

std::string FileSystem::absolute(const std::string& path) const {
  if (hasDrive(path)) return path;
  return std::string(1, drives_.front().letter) + ":\\" + path;
}

std::string FileSystem::host(const std::string& path) const {
  if (pathStyle_ == PathStyle::kSlash || path.empty()) return path;
  const std::string whole = absolute(path);
  const Drive* drive = driveOf(whole);
  // No drive, or not ready: a path that does not exist and cannot be created.
  if (!drive || !drive->ready) return os::textOf(fs::path(scratch_) / "no drive" / whole.substr(0, 1)) + "/.";
  fs::path result = fs::path(scratch_) / std::string(1, drive->letter);
  std::string step;
  for (const char c : whole.substr(2) + "\\") {
    if (c != '\\' && c != '/') {
      step += c;
    } else if (!step.empty()) {
      result = storedSpelling(result, std::exchange(step, {}));
    }
  }
  return os::textOf(result);
}

bool FileSystem::exists(const std::string& path) const {
  std::error_code error;
  return !path.empty() && fs::exists(host(path), error);
}

std::string FileSystem::folderOf(const std::string& path) const {
  const std::size_t last = path.find_last_of(pathStyle_ == PathStyle::kSlash ? "/" : "\\/");
  if (last == std::string::npos) return ".";
  const bool isRoot = last == 0 || (last == 2 && hasDrive(path));
  return path.substr(0, isRoot ? last + 1 : last);
}

bool FileSystem::hasExtension(const std::string& path) const {
  const std::size_t last = path.find_last_of("\\/");
  return path.find('.', last == std::string::npos ? 0 : last) != std::string::npos;
}

std::string FileSystem::resolved(const std::string& path) const {
  if (!exists(path)) return path;
  if (pathStyle_ == PathStyle::kSlash) return os::textOf(fs::canonical(path));
  const fs::path inside = fs::canonical(host(path)).lexically_relative(fs::canonical(scratch_));
  std::string result;
  for (const fs::path& step : inside) {
    if (step == ".") continue;
    result +=
        result.empty() ? os::textOf(step) + ":\\" : (result.ends_with('\\') ? "" : "\\") + os::textOf(step);
  }
  return result;
}

}  // namespace kestrel::headless
