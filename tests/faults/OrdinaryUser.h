#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

namespace kestrel::test {

/// Makes permissions count, which the superuser's processes ignore: while it lives, all threads act as an
/// ordinary user.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    if (wasSuperuser_) {
      EXPECT_EQ(seteuid(kNobody), 0);
    }
  }
  /// The user owns the folder and all that is in it.
  explicit OrdinaryUser(const std::filesystem::path& folder) {
    if (!wasSuperuser_) return;
    EXPECT_EQ(chown(folder.c_str(), kNobody, kNobody), 0);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      EXPECT_EQ(lchown(entry.path().c_str(), kNobody, kNobody), 0);
    }
    EXPECT_EQ(seteuid(kNobody), 0);
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() {
    if (wasSuperuser_ && seteuid(0) != 0) ADD_FAILURE() << "still an ordinary user";
  }

 private:
  static constexpr uid_t kNobody = 65534;
  const bool wasSuperuser_ = geteuid() == 0;
};

}  // namespace kestrel::test
