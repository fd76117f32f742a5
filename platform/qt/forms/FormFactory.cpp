#include "FormFactory.h"

#include <map>

#include "ui_frmResources.h"

namespace kestrel::qt {
namespace {

template <typename Ui>
void setUp(FormWindow& window) {
  Ui().setupUi(&window);
}

}  // namespace

std::unique_ptr<FormWindow> buildForm(const std::string& name) {
  static const std::map<std::string, void (*)(FormWindow&)> kForms = {
      {"frmResources", &setUp<Ui::frmResources>},
  };
  const auto form = kForms.find(name);
  if (form == kForms.end()) return nullptr;
  auto window = std::make_unique<FormWindow>();
  form->second(*window);
  return window;
}

}  // namespace kestrel::qt
