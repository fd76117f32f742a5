#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/Event.h"
#include "base/Object.h"
#include "diagnostics/modTollgarthSupport.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel {

/// The indices of `cmdAction`.
inline constexpr std::int32_t kActionOK = 0;
inline constexpr std::int32_t kActionCancel = 1;

/// What every dialog is: a window made for one use, shown modally, which hides when the user is done so that
/// its opener can read the result fields.
class DialogBase : public Object {
 public:
  /// True after OK succeeded.
  bool Success = false;
  /// While False, closing the window only hides it.
  bool SafeToUnload = false;
  std::string ResultData;

  kestrel::Form& Form() { return *iForm; }

  /// Shows the dialog and returns when the user is done with it.
  void ShowModal();

 protected:
  /// Makes the window of that name. Raises RuntimeError 730 if it lacks a control.
  DialogBase(const char* formName, modTollgarthSupport::Counted counted);
  ~DialogBase() override;
  DialogBase(const DialogBase&) = delete;
  DialogBase& operator=(const DialogBase&) = delete;

  /// Reads the defaults from the options. The window's icon is gone already; the shared look comes
  /// afterwards.
  virtual void Form_Load() = 0;
  /// Runs once, when the window has appeared.
  virtual void Form_FirstActivate() {}
  /// A button was pressed. OK: validate, store, set `Success`, `Unload`; or tell the user, and stay. Cancel:
  /// `Unload`.
  virtual void cmdAction_Click(std::int32_t Index) = 0;

  void Unload() { iForm->Unload(); }
  bool IsWindowVisible();
  /// The caption of the window is the title.
  void Exclaim(const std::string& text);
  /// Takes digits only from the keyboard, and is selected whole when it gets the focus.
  void MakeNumberBox(TextBox& box);
  void Keep(Connection connection) { iConnections.push_back(std::move(connection)); }

 private:
  void Form_QueryUnload(bool& Cancel);

  modTollgarthSupport::Counted iCounted;
  std::unique_ptr<kestrel::Form> iForm;
  bool iActivated = false;
  std::vector<Connection> iConnections;
};

}  // namespace kestrel
