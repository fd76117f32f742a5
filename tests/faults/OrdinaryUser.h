#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

namespace kestrel::test {

/// Makes permissions count, which the superuser's processes ignore: while it lives, all threads act as an
/// ordinary user, who owns the folder.
class OrdinaryUser {
 public:
  explicit OrdinaryUser(const std::filesystem::path& folder) : wasSuperuser_(geteuid() == 0) {
    if (!wasSuperuser_) return;
    constexpr uid_t kNobody = 65534;
    EXPECT_EQ(chown(folder.c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(seteuid(kNobody), 0);
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() {
    if (wasSuperuser_ && seteuid(0) != 0) ADD_FAILURE() << "still an ordinary user";
  }

 private:
  bool wasSuperuser_;
};

}  // namespace kestrel::test
