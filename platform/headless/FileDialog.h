#pragma once

#include <cstdint>
#include <string>

#include "Window.h"
#include "imaging/contract/Control.h"
#include "imaging/contract/ImgXDialog.h"

namespace kestrel::headless {

class FileSystem;
class User;

/// The file dialog, operated by the scripted user. A name that the dialog rejects is a complaint and counts
/// as canceled.
class FileDialog final : public ImgXDialog {
 public:
  FileDialog(Desktop& desktop, User& user, const FileSystem& files);

  void OwnerWindow(WindowHandle value) override { owner_ = value; }
  void Filter(const std::string& value) override { filter_ = value; }
  std::string Filter() const override { return filter_; }
  void Flags(std::int32_t value) override { flags_ = value; }
  std::int32_t Flags() const override { return flags_; }
  void DefaultExt(const std::string& value) override { defaultExt_ = value; }
  std::string DefaultExt() const override { return defaultExt_; }
  std::string Filename() const override { return filename_; }
  void Filename(const std::string& value) override { filename_ = value; }
  void CenterOnOwner(bool value) override { centered_ = value; }
  void FilterIndex(std::int32_t value) override { filterIndex_ = value; }
  void MaxFiles(std::int32_t value) override { maxFiles_ = value; }

  bool ShowOpen() override { return show(false); }
  bool ShowSave() override { return show(true); }

  void GetControlRect(std::int32_t controlId, std::int32_t& left, std::int32_t& top, std::int32_t& width,
                      std::int32_t& height) override;
  void MoveControl(WindowHandle window, std::int32_t x, std::int32_t y) override;

  // State visible to the user.
  WindowHandle ownerWindow() const { return owner_; }
  bool centered() const { return centered_; }
  std::int32_t filterIndex() const { return filterIndex_; }
  std::int32_t maxFiles() const { return maxFiles_; }
  bool isSave() const { return isSave_; }
  Size size() const { return {window_.place().Width, window_.place().Height}; }
  /// The control moved into the dialog, null if there is none.
  Control* guest() const;

  /// The size without moved controls, and the rectangle of the stock label of the file-type row.
  static constexpr Size kSize{563, 401};
  static constexpr Rectangle kFileTypeLabel{103, 352, 88, 13};

 private:
  bool show(bool save);
  void prepare();
  void giveGuestBack();
  /// Whether the dialog accepts the name.
  bool accepts(const std::string& name) const;

  User& user_;
  const FileSystem& files_;
  Window window_;
  WindowHandle guest_ = 0;
  Rectangle guestPlace_;
  bool preparing_ = false;
  bool isSave_ = false;

  WindowHandle owner_ = 0;
  std::string filter_;
  std::int32_t flags_ = 0;
  std::string defaultExt_;
  std::string filename_;
  bool centered_ = false;
  std::int32_t filterIndex_ = 0;
  std::int32_t maxFiles_ = 1;
};

}  // namespace kestrel::headless
