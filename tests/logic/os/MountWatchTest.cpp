#include "platform/os/MountWatch.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "Folder.h"

namespace kestrel::os {
namespace {

constexpr int kLongestWait = 60'000;  // milliseconds

enum Result : int { kNoticed, kRefused, kUnnoticed, kNoticedWithoutCause };

/// Whether the watch notices something within a time.
bool notices(const MountWatch& watch, int milliseconds) {
  pollfd source{watch.descriptor(), POLLPRI, 0};
  return ::poll(&source, 1, milliseconds) == 1 && (source.revents & POLLPRI) != 0;
}

/// In a process with mounts of its own, if the system allows that.
int mountAndUnmount(const std::string& folder) {
  if (::unshare(CLONE_NEWNS) != 0 && ::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return kRefused;
  if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return kRefused;
  const MountWatch watch;
  if (::mount("none", folder.c_str(), "tmpfs", 0, nullptr) != 0) return kRefused;
  if (!notices(watch, kLongestWait)) return kUnnoticed;
  if (notices(watch, 0)) return kNoticedWithoutCause;
  if (::umount(folder.c_str()) != 0) return kRefused;
  return notices(watch, kLongestWait) ? kNoticed : kUnnoticed;
}

TEST(MountWatchTest, NoticesEachMountAndUnmountOnce) {
  const Folder folder;
  const std::string path = folder.path().string();
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) ::_exit(mountAndUnmount(path));
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == kRefused) return;  // the system does not let this user mount
  EXPECT_EQ(WEXITSTATUS(status), kNoticed);
}

TEST(MountWatchTest, NoticesNothingWhileNothingIsMounted) {
  const MountWatch watch;
  ASSERT_GE(watch.descriptor(), 0);
  EXPECT_FALSE(notices(watch, 0));
}

}  // namespace
}  // namespace kestrel::os
