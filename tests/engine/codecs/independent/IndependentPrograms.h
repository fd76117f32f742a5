#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "../TestPictures.h"

namespace kestrel::engine::test {

/// A temporary folder in which other programs read and write picture files. The destructor removes it.
class Workshop {
 public:
  Workshop();
  ~Workshop();
  Workshop(const Workshop&) = delete;
  Workshop& operator=(const Workshop&) = delete;

  std::filesystem::path path(const std::string& name) const { return folder_ / name; }
  void put(const std::string& name, Bytes bytes) const;
  std::vector<std::uint8_t> bytes(const std::string& name) const;

  /// Runs every line of a shell script in the folder with the distribution's programs. A line that fails
  /// fails the test, which shows the line and its output.
  void run(const std::vector<std::string>& lines) const;

  /// Runs a Python script, which may use Pillow, in the folder.
  void runPython(const std::string& script, const std::vector<std::string>& arguments = {}) const;

  /// Converts each file to NAME.pam with Pillow.
  void readWithPillow(const std::vector<std::string>& names) const;

  /// Reads a Netpbm file (P4, P5, P6, P7), 16-bit samples rounded to 8 bits.
  Bitmap netpbmPicture(const std::string& name) const;

 private:
  std::filesystem::path folder_;
};

/// Decodes with stb_image. Raises std::runtime_error with its reason if it cannot.
Bitmap readWithStb(Bytes file);

/// The picture composited over white, opaque.
Bitmap onWhite(const Bitmap& bitmap);

/// The largest difference of two samples at the same position; the sizes must be equal.
int largestDifference(const Bitmap& a, const Bitmap& b);

}  // namespace kestrel::engine::test
