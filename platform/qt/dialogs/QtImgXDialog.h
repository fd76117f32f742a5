#pragma once

#include <QFileDialog>
#include <QString>
#include <functional>

#include "base/OpenCalls.h"
#include "imaging/contract/ImgXDialog.h"

namespace kestrel::qt {

class FileDialogWindow;

class QtImgXDialog final : public ImgXDialog {
 public:
  explicit QtImgXDialog(OpenCalls& calls) : calls_(calls) {}

  void OwnerWindow(WindowHandle value) override { owner_ = value; }
  void Filter(const std::string& value) override { filter_ = value; }
  std::string Filter() const override { return filter_; }
  void Flags(std::int32_t value) override { flags_ = value; }
  std::int32_t Flags() const override { return flags_; }
  void DefaultExt(const std::string& value) override { defaultExt_ = value; }
  std::string DefaultExt() const override { return defaultExt_; }
  std::string Filename() const override { return filename_; }
  void Filename(const std::string& value) override { filename_ = value; }
  void CenterOnOwner(bool value) override { centerOnOwner_ = value; }
  void FilterIndex(std::int32_t value) override { filterIndex_ = value; }
  void MaxFiles(std::int32_t value) override { maxFiles_ = value; }

  bool ShowOpen() override;
  bool ShowSave() override;

  void GetControlRect(std::int32_t controlId, std::int32_t& left, std::int32_t& top, std::int32_t& width,
                      std::int32_t& height) override;
  void MoveControl(WindowHandle window, std::int32_t x, std::int32_t y) override;

 private:
  bool show(bool save);
  void setUpFilters(QFileDialog& dialog) const;
  void setUpStart(QFileDialog& dialog) const;
  FileDialogWindow& shown() const;

  OpenCalls& calls_;
  WindowHandle owner_ = 0;
  std::string filter_;
  std::int32_t flags_ = 0;
  std::string defaultExt_;
  std::string filename_;
  bool centerOnOwner_ = false;
  std::int32_t filterIndex_ = 0;
  std::int32_t maxFiles_ = 1;
  QString folder_;                            // the last folder of the user
  FileDialogWindow* initializing_ = nullptr;  // while `InitDialog` is being raised
};

/// The entries of a filter string in the toolkit's form: "description (pattern pattern)".
QStringList nameFilters(const std::string& filter);

}  // namespace kestrel::qt
