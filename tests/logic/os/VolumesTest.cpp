#include "platform/os/Volumes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Folder.h"
#include "platform/os/Paths.h"

namespace kestrel::os {
namespace {

using testing::ElementsAre;

constexpr char kTable[] =
    "22 27 0:21 / /proc rw,relatime - proc proc rw\n"
    "27 1 254:0 / / rw,relatime - ext4 /dev/vda rw,discard\n"
    "28 27 0:25 / /run/user/1000 rw - tmpfs tmpfs rw\n"
    "29 27 254:1 / /boot/efi rw - vfat /dev/vda1 rw\n"
    "30 27 254:2 / /home rw,relatime shared:1 - ext4 /dev/vda2 rw\n"
    "31 27 7:0 / /snap/editor/3 ro - squashfs /dev/loop0 ro\n"
    "32 27 7:1 / /opt/image ro - squashfs /dev/loop1 ro\n"
    "33 27 8:17 / /media/ada/HOLIDAY\\040PICS rw - vfat /dev/sdb1 rw\n"
    "34 27 11:0 / /media/ada/DISC ro - udf /dev/sr0 ro\n"
    "35 27 0:50 / /mnt/photos rw - nfs4 server.lan:/export/photos rw\n"
    "36 27 0:51 / /mnt/share rw - cifs //SERVER/photos rw\n"
    "37 27 0:52 / /home/ada/far rw - fuse.sshfs ada@far:/ rw\n"
    "38 27 0:53 / /run/user/1000/gvfs rw - fuse.gvfsd-fuse gvfsd-fuse rw\n"
    "39 27 0:54 / /tank rw - zfs tank rw\n"
    "40 27 254:0 /etc/hosts /etc/hosts rw - ext4 /dev/vda rw\n"
    "41 27 0:55 / /mnt/six rw - nfs [fd00::1]:/six rw\n";

std::vector<std::string> folders(const std::vector<Volume>& volumes) {
  std::vector<std::string> names;
  for (const Volume& volume : volumes) names.push_back(textOf(volume.folder));
  return names;
}

Volume at(const std::vector<Volume>& volumes, const std::string& folder) {
  for (const Volume& volume : volumes) {
    if (textOf(volume.folder) == folder) return volume;
  }
  ADD_FAILURE() << "no volume at " << folder;
  return {};
}

TEST(Volumes, AreTheRootAndMountsWithoutPseudoFileSystemsAndSystemFolders) {
  EXPECT_THAT(folders(volumesIn(kTable)),
              ElementsAre("/", "/home", "/media/ada/HOLIDAY PICS", "/media/ada/DISC", "/mnt/photos",
                          "/mnt/share", "/home/ada/far", "/tank", "/mnt/six"));
}

TEST(Volumes, AreRemoteWhereTheyMayWaitForAnotherMachineOrAProgram) {
  std::vector<std::string> names;
  for (const auto& folder :
       remoteFoldersIn(std::string(kTable) + "42 27 0:56 / /mnt/auto rw - autofs systemd-1 rw\n"
                                             "43 27 8:33 / /mnt/stick rw - fuseblk /dev/sdc1 rw\n")) {
    names.push_back(textOf(folder));
  }
  EXPECT_THAT(names, ElementsAre("/mnt/photos", "/mnt/share", "/home/ada/far", "/run/user/1000/gvfs",
                                 "/mnt/six", "/mnt/auto"));
}

TEST(Volumes, HaveTheirKinds) {
  const std::vector<Volume> volumes = volumesIn(kTable);
  EXPECT_EQ(at(volumes, "/").kind, VolumeKind::kFixed);
  EXPECT_EQ(at(volumes, "/home").kind, VolumeKind::kFixed);
  EXPECT_EQ(at(volumes, "/tank").kind, VolumeKind::kFixed);
  EXPECT_EQ(at(volumes, "/media/ada/HOLIDAY PICS").kind, VolumeKind::kRemovable);
  EXPECT_EQ(at(volumes, "/media/ada/DISC").kind, VolumeKind::kDisc);
  EXPECT_EQ(at(volumes, "/mnt/photos").kind, VolumeKind::kNetwork);
  EXPECT_EQ(at(volumes, "/home/ada/far").kind, VolumeKind::kNetwork);
}

TEST(Volumes, OfANetworkHaveServerAndFolder) {
  const std::vector<Volume> volumes = volumesIn(kTable);
  EXPECT_EQ(at(volumes, "/mnt/photos").networkName, R"(\\server.lan\export\photos)");
  EXPECT_EQ(at(volumes, "/mnt/share").networkName, R"(\\SERVER\photos)");
  EXPECT_EQ(at(volumes, "/home/ada/far").networkName, R"(\\far\far)") << "the root of a server";
  EXPECT_EQ(at(volumes, "/mnt/six").networkName, R"(\\[fd00::1]\six)");
  EXPECT_EQ(at(volumes, "/").networkName, "");
}

TEST(Volumes, ThatAreMountedOverHideTheEarlierOnes) {
  const std::string table =
      "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n"
      "2 1 8:2 / /data rw - ext4 /dev/sda2 rw\n"
      "3 1 8:3 / /data rw - ext4 /dev/sda3 rw\n"
      "4 1 8:4 / /work rw - ext4 /dev/sda4 rw\n"
      "5 1 0:9 / /work rw - tmpfs tmpfs rw\n";
  const std::vector<Volume> volumes = volumesIn(table);
  EXPECT_THAT(folders(volumes), ElementsAre("/", "/data"));
  EXPECT_EQ(at(volumes, "/data").device, "/dev/sda3");
}

TEST(Volumes, TheRootIsThereWithoutAReadableTable) {
  EXPECT_THAT(folders(volumesIn("")), ElementsAre("/"));
  EXPECT_THAT(folders(volumesIn("nonsense\n\n1 2 3 - ext4\n")), ElementsAre("/"));
  EXPECT_THAT(folders(mountedVolumes()), testing::Contains("/"));
}

TEST(Volumes, HaveTheLabelThatLinksToTheirDevice) {
  const Folder folder;
  folder.put("sdb1", "");
  folder.put("sdc1", "");
  std::filesystem::create_directory(folder.path() / "by-label");
  std::filesystem::create_symlink("../sdb1", folder.path() / "by-label" / "MY\\x20KEY\\xc3\\xa4");
  std::filesystem::create_symlink("../gone", folder.path() / "by-label" / "OTHER");
  Volume volume;
  volume.device = textOf(folder.path() / "sdb1");
  EXPECT_EQ(labelOf(volume, folder.path() / "by-label"), "MY KEY\xC3\xA4");
  volume.device = textOf(folder.path() / "sdc1");
  EXPECT_EQ(labelOf(volume, folder.path() / "by-label"), "") << "no label";
  EXPECT_EQ(labelOf(volume, folder.path() / "missing"), "");
  volume.device.clear();
  EXPECT_EQ(labelOf(volume, folder.path() / "by-label"), "");
}

/// Descriptions of devices as the system lays them out: a link for each name, partitions inside their disks.
TEST(Volumes, AreRemovableByTheDescriptionOfTheirDisk) {
  namespace fs = std::filesystem;
  const Folder scratch;
  const fs::path devices = scratch.path() / "devices";
  const fs::path blocks = scratch.path() / "block";
  fs::create_directories(blocks);
  for (const auto& [disk, flag] : {std::pair("sda", "0\n"), std::pair("sdb", "1\n")}) {
    const std::string part = disk + std::string("1");
    fs::create_directories(devices / disk / part);
    std::ofstream(devices / disk / "removable") << flag;
    std::ofstream(devices / disk / part / "partition") << "1\n";
    fs::create_directory_symlink(devices / disk, blocks / disk);
    fs::create_directory_symlink(devices / disk / part, blocks / part);
  }
  EXPECT_TRUE(isRemovable("/dev/sdb1", blocks));
  EXPECT_TRUE(isRemovable("/dev/sdb", blocks)) << "a disk without partitions";
  EXPECT_FALSE(isRemovable("/dev/sda1", blocks));
  EXPECT_FALSE(isRemovable("/dev/sdc1", blocks)) << "not described";
  EXPECT_FALSE(isRemovable("", blocks)) << "of no device";
}

}  // namespace
}  // namespace kestrel::os
