#include "FormUtility.h"

#include "../Window.h"
#include "../controls/TextBox.h"
#include "base/RuntimeError.h"

namespace kestrel::headless {

void FormUtility::SelectAllText(kestrel::TextBox& textBox) {
  if (auto* own = dynamic_cast<TextBox*>(&textBox)) own->selectAll();
}

void FormUtility::SetFocusTo(Control& control) {
  Window* window = desktop_.find(control.hWnd());
  if (!window || !window->isShown() || !window->isUsable()) {
    throw RuntimeError(err::kInvalidCall,
                       "\"" + control.Name() + "\" can't take the focus while it is hidden or disabled.");
  }
  if (desktop_.focus == window->handle()) return;
  desktop_.focus = window->handle();
  window->focused();
}

bool FormUtility::ShowDialog(kestrel::Form& form, std::int32_t mode, kestrel::Control* owner) {
  form.Show(mode == 1, owner);
  bool result = false;
  form.QueryResult(result);
  return result;
}

}  // namespace kestrel::headless
