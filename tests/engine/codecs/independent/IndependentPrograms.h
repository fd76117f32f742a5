#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "../TestPictures.h"

namespace kestrel::engine::test {

/// A folder in which other programs read and write picture files; it goes with the object.
class Workshop {
 public:
  Workshop();
  ~Workshop();
  Workshop(const Workshop&) = delete;
  Workshop& operator=(const Workshop&) = delete;

  std::filesystem::path path(const std::string& name) const { return folder_ / name; }
  void put(const std::string& name, Bytes bytes) const;
  std::vector<std::uint8_t> bytes(const std::string& name) const;

  /// Runs the lines of a shell script in the folder, all of them whether one fails or not, with the
  /// distribution's own programs. What fails, fails the test, which shows the line and what the program said.
  void run(const std::vector<std::string>& lines) const;

  /// Runs a script for Python, which has Pillow, in the folder.
  void runPython(const std::string& script, const std::vector<std::string>& arguments = {}) const;

  /// Lets Pillow read each file and write NAME.pam.
  void readWithPillow(const std::vector<std::string>& names) const;

  /// A picture in one of the plain formats of the Netpbm family (P4, P5, P6, P7), wide samples rounded to 8
  /// bits.
  Bitmap plainPicture(const std::string& name) const;

 private:
  std::filesystem::path folder_;
};

/// The file's picture as the stb_image library reads it; raises std::runtime_error with its reason if it does
/// not.
Bitmap readWithStb(Bytes file);

/// The picture over white, opaque.
Bitmap onWhite(const Bitmap& bitmap);

/// The largest difference of any sample of any two pixels in the same place; the sizes must be equal.
int largestDifference(const Bitmap& a, const Bitmap& b);

}  // namespace kestrel::engine::test
