#include "FailingCalls.h"

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>

namespace {

using kestrel::test::Fault;

// Threads of the tested code make calls, too.
std::atomic<Fault> fault{Fault::kNone};
std::atomic<int> faultError{EIO};
std::atomic<int> faultAt{0};
std::atomic<int> calls{0};

/// Counts a call; true if it shall fail, with errno set.
bool struck() {
  const bool now = ++calls == faultAt;
  if (now && fault == Fault::kKilled) kill(getpid(), SIGKILL);
  if (!now || fault != Fault::kFails) return false;
  errno = faultError;
  return true;
}

}  // namespace

extern "C" {
ssize_t __real_write(int file, const void* data, std::size_t count);
int __real_fsync(int file);
int __real_fdatasync(int file);
int __real_flock(int file, int operation);
int __real_linkat(int from, const char* source, int to, const char* target, int flags);
int __real_mkdir(const char* name, mode_t mode);
int __real_renameat(int from, const char* source, int to, const char* target);
int __real_unlink(const char* name);
int __real_unlinkat(int folder, const char* name, int flags);

ssize_t __wrap_write(int file, const void* data, std::size_t count) {
  if (struck()) return -1;
  if (fault == Fault::kWritesLittle) {
    if (calls % 3 == 0) {
      errno = EINTR;
      return -1;
    }
    count = std::min<std::size_t>(count, 100);
  }
  return __real_write(file, data, count);
}
int __wrap_fsync(int file) { return struck() ? -1 : __real_fsync(file); }
int __wrap_fdatasync(int file) { return struck() ? -1 : __real_fdatasync(file); }
int __wrap_flock(int file, int operation) { return struck() ? -1 : __real_flock(file, operation); }
int __wrap_linkat(int from, const char* source, int to, const char* target, int flags) {
  return struck() ? -1 : __real_linkat(from, source, to, target, flags);
}
int __wrap_mkdir(const char* name, mode_t mode) { return struck() ? -1 : __real_mkdir(name, mode); }
int __wrap_renameat(int from, const char* source, int to, const char* target) {
  return struck() ? -1 : __real_renameat(from, source, to, target);
}
int __wrap_unlink(const char* name) { return struck() ? -1 : __real_unlink(name); }
int __wrap_unlinkat(int folder, const char* name, int flags) {
  return struck() ? -1 : __real_unlinkat(folder, name, flags);
}
}

namespace kestrel::test {

void strike(Fault what, int at, int error) {
  fault = what;
  faultAt = at;
  faultError = error;
  calls = 0;
}

int callsSinceStrike() { return calls; }

void writeUncounted(int file, const void* data, std::size_t size) {
  [[maybe_unused]] const ssize_t written = __real_write(file, data, size);
}

}  // namespace kestrel::test
