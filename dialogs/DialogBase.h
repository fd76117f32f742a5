#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Event.h"
#include "base/Object.h"
#include "diagnostics/CountedForm.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/controls/CommandButton.h"
#include "imaging/contract/controls/TextBox.h"

namespace kestrel {

/// The indices of `cmdAction`.
inline constexpr std::int32_t kActionOK = 0;
inline constexpr std::int32_t kActionCancel = 1;

/// Where a dialog has OK and Cancel.
enum class DialogButtons {
  kActions,  ///< the buttons `cmdAction`
  kHeader,   ///< its `FormHeader`
};

/// Base of all dialogs: a window made for one use, shown modally, which hides when the user is done so that
/// its opener can read the result fields.
class DialogBase : public Object {
 public:
  /// True after OK succeeded.
  bool Success = false;
  /// While False, closing the window only hides it.
  bool SafeToUnload = false;
  std::string ResultData;

  kestrel::Form& Form() { return *iForm; }

  /// Shows the dialog over its owner, returns when the user is done with it or the owner is destroyed, and
  /// returns `Success`.
  bool ShowModal(Control* Owner = nullptr);

 protected:
  /// Makes the window of that name. Raises RuntimeError 730 if it lacks a control.
  explicit DialogBase(const char* formName, DialogButtons buttons = DialogButtons::kActions);
  ~DialogBase() override;
  DialogBase(const DialogBase&) = delete;
  DialogBase& operator=(const DialogBase&) = delete;

  /// Removes the window's icon, reads the defaults from the options, and last calls `ApplyLook`.
  virtual void Form_Load() = 0;
  /// Runs once, when the window has appeared.
  virtual void Form_FirstActivate() {}
  /// A button was pressed. OK: validate, store, set `Success`, `Unload`; on invalid input notify the user and
  /// stay open. Cancel: `Unload`.
  virtual void cmdAction_Click(std::int32_t /*Index*/) {}
  /// The window is about to be unloaded and will not only hide.
  virtual void Form_UnloadForGood() {}

  /// The dialog's fields for a report. Errors in this base class are reported under the dialog's own name
  /// (`TypeName`) and with these fields.
  virtual std::string qdkDumpModuleVariables() const = 0;

  void Unload() { iForm->Unload(); }
  /// Gives the window the shared look; a failure is ignored.
  void ApplyLook();
  bool IsWindowVisible();
  /// Shows an exclamation box with the window's caption as title.
  void Exclaim(const std::string& text);
  /// Makes the box accept only digits from the keyboard.
  void MakeNumberBox(TextBox& box);
  void Keep(Connection connection) { iConnections.push_back(std::move(connection)); }

 private:
  void Form_Activate();
  void Form_QueryUnload(bool& Cancel);

  CountedForm iForm;
  bool iActivated = false;
  std::vector<Connection> iConnections;
};

}  // namespace kestrel
