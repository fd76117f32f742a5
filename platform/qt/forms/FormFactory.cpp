#include "FormFactory.h"

#include <map>

#include "FormList.h"

namespace kestrel::qt {
namespace {

template <typename Ui>
void setUp(FormWindow& window) {
  auto ui = std::make_shared<Ui>();
  ui->setupUi(&window);
  window.retranslate = [ui, &window] { ui->retranslateUi(&window); };
}

}  // namespace

std::unique_ptr<FormWindow> buildForm(const std::string& name) {
#define KESTREL_FORM(name) {#name, &setUp<Ui::name>},
  static const std::map<std::string, void (*)(FormWindow&)> kForms = {KESTREL_FORMS(KESTREL_FORM)};
#undef KESTREL_FORM
  const auto form = kForms.find(name);
  if (form == kForms.end()) return nullptr;
  auto window = std::make_unique<FormWindow>();
  form->second(*window);
  window->finishSetUp();
  return window;
}

}  // namespace kestrel::qt
