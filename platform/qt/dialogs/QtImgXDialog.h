#pragma once

#include <QFileDialog>
#include <QString>
#include <functional>
#include <memory>

#include "base/OpenCalls.h"
#include "imaging/contract/ImgXDialog.h"
#include "imaging/contract/RegistryStore.h"
#include "imaging/contract/WindowPositions.h"

namespace kestrel::engine {
class ThumbnailReader;
}

namespace kestrel::qt {

class FileDialogWindow;

/// The folder of the last accepted file is in the key store, below the key of the window positions: the user
/// goes on where the last run of the program ended, whichever of its dialogs it was.

class QtImgXDialog final : public ImgXDialog {
 public:
  QtImgXDialog(OpenCalls& calls, RegistryStore& store, const WindowPositions& positions);
  ~QtImgXDialog() override;

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
  QString lastFolder() const;
  void rememberFolder(const QString& folder);
  FileDialogWindow& shown() const;

  OpenCalls& calls_;
  RegistryStore& store_;
  const WindowPositions& positions_;
  std::unique_ptr<engine::ThumbnailReader> reader_;
  WindowHandle owner_ = 0;
  std::string filter_;
  std::int32_t flags_ = 0;
  std::string defaultExt_;
  std::string filename_;
  bool centerOnOwner_ = false;
  std::int32_t filterIndex_ = 0;
  std::int32_t maxFiles_ = 1;
  QString folder_;  // the last folder of the user, for a program without window positions
  FileDialogWindow* initializing_ = nullptr;  // while `InitDialog` is being raised
};

/// The entries of a filter string in the toolkit's form: "description (pattern pattern)". A pattern for an
/// extension of a picture format also finds the format's other extensions; the toolkit ignores case.
QStringList nameFilters(const std::string& filter);

}  // namespace kestrel::qt
