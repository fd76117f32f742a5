#include "FileTransfer.h"

#include "Work.h"

namespace kestrel::transfer {
namespace {

namespace fs = std::filesystem;

/// The path without separators at its end, with which the system would follow a link.
fs::path entryOf(fs::path path) {
  while (!path.has_filename() && path.has_relative_path()) path = path.parent_path();
  return path;
}

}  // namespace

Report carryOut(const Request& request, Caller& caller) {
  Request entries = request;
  for (fs::path& source : entries.sources) source = entryOf(source);
  return Work(entries, caller).run();
}

}  // namespace kestrel::transfer
