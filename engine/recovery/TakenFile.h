#pragma once

#include <memory>
#include <utility>

#include "Snapshot.h"
#include "engine/imgx/ClipboardPort.h"
#include "engine/imgx/ImgXObject.h"
#include "imaging/contract/ImageView.h"
#include "imaging/contract/Recovery.h"
#include "platform/os/OwnedFile.h"

namespace kestrel::engine {

/// A kept picture with the lock on its file.
class TakenFile final : public TakenPicture {
 public:
  TakenFile(os::OwnedFile file, PictureState picture)
      : file_(std::move(file)), picture_(clipboard_, std::move(picture)) {}

  ImgX& Picture() override { return picture_; }
  os::OwnedFile release() { return std::move(file_); }

 private:
  /// The picture is only a source, so it needs no clipboard.
  class NoClipboard final : public ClipboardPort {
   public:
    void offer(const Bitmap& /*bitmap*/) override {}
    bool hasBitmap() override { return false; }
    Bitmap take() override { throw RuntimeError(err::kInvalidPicture, "There is no clipboard."); }
  };

  class KeptImgX final : public ImgXObject {
   public:
    KeptImgX(ClipboardPort& clipboard, PictureState state) : ImgXObject(clipboard) {
      putPicture(std::move(state), kNoUndo);
    }
  };

  os::OwnedFile file_;
  NoClipboard clipboard_;
  KeptImgX picture_;
};

}  // namespace kestrel::engine
