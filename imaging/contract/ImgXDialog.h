#pragma once

#include <cstdint>
#include <string>

#include "Types.h"
#include "base/Event.h"

namespace kestrel {

/// Bits of `ImgXDialog::Flags`.
inline constexpr std::int32_t kDialogOverwritePrompt = 2;
inline constexpr std::int32_t kDialogHideReadOnly = 4;
inline constexpr std::int32_t kDialogPathMustExist = 2048;
inline constexpr std::int32_t kDialogFileMustExist = 4096;

/// The stock label of the file-type row, for `ImgXDialog::GetControlRect`.
inline constexpr std::int32_t kDialogFileTypeLabel = 1089;

/// The dialog that asks for a file to open or to save to. It can be shown repeatedly.
class ImgXDialog {
 public:
  virtual ~ImgXDialog() = default;

  virtual void OwnerWindow(WindowHandle value) = 0;
  /// Descriptions and patterns in turn, joined by "|"; the patterns of one entry joined by ";".
  virtual void Filter(const std::string& value) = 0;
  virtual std::string Filter() const = 0;
  virtual void Flags(std::int32_t value) = 0;
  virtual std::int32_t Flags() const = 0;
  /// Appended to a name that is typed without an extension; empty for none.
  virtual void DefaultExt(const std::string& value) = 0;
  virtual std::string DefaultExt() const = 0;
  virtual std::string Filename() const = 0;
  virtual void Filename(const std::string& value) = 0;

  /// Whether it is centered on its owner.
  virtual void CenterOnOwner(bool value) = 0;
  /// The filter entry that is selected first, counted from 0.
  virtual void FilterIndex(std::int32_t value) = 0;
  /// The maximum number of files; 1 is single selection.
  virtual void MaxFiles(std::int32_t value) = 0;

  /// True when the user accepted a name, which is then in `Filename`.
  virtual bool ShowOpen() = 0;
  virtual bool ShowSave() = 0;

  /// Only during `InitDialog`: the pixel rectangle of a stock control of the dialog. Raises RuntimeError 5
  /// for an unknown control.
  virtual void GetControlRect(std::int32_t controlId, std::int32_t& left, std::int32_t& top,
                              std::int32_t& width, std::int32_t& height) = 0;
  /// Only during `InitDialog`: moves a window into the dialog. When the dialog closes, the window goes back
  /// to where it was.
  virtual void MoveControl(WindowHandle window, std::int32_t x, std::int32_t y) = 0;

  /// Before the dialog shows: its width and height in pixels, which the handler may change.
  Event<std::int32_t&, std::int32_t&> InitDialog;
};

}  // namespace kestrel
