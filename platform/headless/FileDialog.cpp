#include "FileDialog.h"

#include <utility>

#include "FileSystem.h"
#include "User.h"
#include "base/RuntimeError.h"
#include "imaging/contract/Control.h"

namespace kestrel::headless {

FileDialog::FileDialog(Desktop& desktop, User& user, const FileSystem& files)
    : user_(user), files_(files), window_(desktop, nullptr, "FileDialog", -1) {
  window_.visible(false);
}

bool FileDialog::show(bool save) {
  isSave_ = save;
  prepare();
  window_.visible(true);
  const std::optional<std::string> chosen = user_.useFileDialog(*this);
  window_.visible(false);
  giveGuestBack();
  if (!chosen) return false;

  std::string name = *chosen;
  if (!defaultExt_.empty() && !files_.hasExtension(name)) name += "." + defaultExt_;
  if (!accepts(name)) return false;
  filename_ = std::move(name);
  return true;
}

void FileDialog::prepare() {
  std::int32_t width = kSize.Width;
  std::int32_t height = kSize.Height;
  preparing_ = true;
  try {
    InitDialog(width, height);
  } catch (...) {
    preparing_ = false;
    throw;
  }
  preparing_ = false;
  window_.place({0, 0, width, height});
}

bool FileDialog::accepts(const std::string& name) const {
  if (name.empty()) {
    user_.complain("The file dialog does not close without a name.");
    return false;
  }
  if ((flags_ & kDialogFileMustExist) != 0 && !files_.exists(name)) {
    user_.complain("The file dialog does not take \"" + name + "\", which does not exist.");
    return false;
  }
  if ((flags_ & kDialogPathMustExist) != 0 && !files_.exists(files_.folderOf(name))) {
    user_.complain("The file dialog does not take \"" + name + "\", whose folder does not exist.");
    return false;
  }
  return true;
}

void FileDialog::GetControlRect(std::int32_t controlId, std::int32_t& left, std::int32_t& top,
                                std::int32_t& width, std::int32_t& height) {
  if (!preparing_ || controlId != kDialogFileTypeLabel) {
    throw RuntimeError(err::kInvalidCall,
                       "The file dialog has no control " + std::to_string(controlId) + " to ask about now.");
  }
  left = kFileTypeLabel.Left;
  top = kFileTypeLabel.Top;
  width = kFileTypeLabel.Width;
  height = kFileTypeLabel.Height;
}

void FileDialog::MoveControl(WindowHandle window, std::int32_t x, std::int32_t y) {
  Window* guest = window_.desktop().find(window);
  if (!preparing_ || !guest) {
    throw RuntimeError(err::kInvalidCall,
                       "Only a window that exists can be moved into the dialog, and only before it shows.");
  }
  giveGuestBack();
  guest_ = window;
  guestPlace_ = guest->place();
  guest->host(&window_);
  guest->place({x, y, guestPlace_.Width, guestPlace_.Height});
}

void FileDialog::giveGuestBack() {
  if (Window* guest = window_.desktop().find(std::exchange(guest_, 0))) {
    guest->host(nullptr);
    guest->place(guestPlace_);
  }
}

Control* FileDialog::guest() const { return dynamic_cast<Control*>(window_.desktop().find(guest_)); }

}  // namespace kestrel::headless
