#pragma once

#include <gmock/gmock.h>
#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "../codecs/TestPictures.h"
#include "engine/imgx/ClipboardPort.h"
#include "engine/imgx/ImgXObject.h"
#include "engine/imgx/PictureObject.h"
#include "engine/recovery/RecoveryFolder.h"
#include "imaging/contract/ImageView.h"

namespace kestrel::engine {

class NoClipboard final : public ClipboardPort {
 public:
  void offer(const Bitmap& /*bitmap*/) override {}
  bool hasBitmap() override { return false; }
  Bitmap take() override { throw RuntimeError(err::kInvalidPicture); }
};

/// A picture as a view has it.
class PictureOfView final : public ImgXObject {
 public:
  explicit PictureOfView(PictureState state) : PictureOfView(std::make_unique<NoClipboard>()) {
    putPicture(std::move(state), kNoUndo);
  }

 private:
  explicit PictureOfView(std::unique_ptr<NoClipboard> clipboard)
      : ImgXObject(*clipboard), clipboard_(std::move(clipboard)) {}
  std::unique_ptr<NoClipboard> clipboard_;
};

inline PictureOfView viewOf(const Bitmap& bitmap) { return PictureOfView(PictureState{bitmap, 1}); }

inline bool samePixels(const Bitmap& a, const Bitmap& b) {
  if (a.width() != b.width() || a.height() != b.height()) return false;
  for (std::int32_t y = 0; y < a.height(); ++y) {
    for (std::int32_t x = 0; x < a.width(); ++x) {
      if (!(a.at(x, y) == b.at(x, y))) return false;
    }
  }
  return true;
}

inline bool samePixels(TakenPicture& taken, const Bitmap& bitmap) {
  return samePixels(bitmapOf(*taken.Picture().Image()), bitmap);
}

/// A folder of kept pictures.
class RecoveryBench : public testing::Test {
 protected:
  RecoveryBench() {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-recovery-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No folder could be made.");
    scratch_ = name;
    folder_ = scratch_ / "pictures";
  }
  ~RecoveryBench() override { std::filesystem::remove_all(scratch_); }

  RecoveryFolder store(RecoveryBounds bounds = {}) const { return RecoveryFolder(folder_, bounds); }

  /// Leaves a picture there, as an editor does that ends without a question.
  void leave(const Bitmap& bitmap, const std::string& filename = "a.png", RecoveryBounds bounds = {}) const {
    RecoveryFolder folder = store(bounds);
    const auto journal = folder.CreateJournal();
    PictureOfView picture = viewOf(bitmap);
    journal->Keep(picture, filename);
    journal->Finish();
    EXPECT_EQ(journal->Failure(), "");
  }

  /// The files in the folder, hidden ones too.
  std::size_t files() const {
    std::error_code error;
    std::size_t count = 0;
    for (std::filesystem::directory_iterator entry(folder_, error), end; !error && entry != end; ++entry) {
      ++count;
    }
    return count;
  }
  std::filesystem::path onlyFile() const { return std::filesystem::directory_iterator(folder_)->path(); }

  std::filesystem::path scratch_;
  std::filesystem::path folder_;
};

}  // namespace kestrel::engine
