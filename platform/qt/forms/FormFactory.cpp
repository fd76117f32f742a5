#include "FormFactory.h"

#include <map>

#include "ui_frmImageEditor.h"
#include "ui_frmMaterials.h"
#include "ui_frmResources.h"
#include "ui_frmRotate.h"
#include "ui_frmZoom.h"

namespace kestrel::qt {
namespace {

template <typename Ui>
void setUp(FormWindow& window) {
  Ui().setupUi(&window);
}

}  // namespace

std::unique_ptr<FormWindow> buildForm(const std::string& name) {
  static const std::map<std::string, void (*)(FormWindow&)> kForms = {
      {"frmImageEditor", &setUp<Ui::frmImageEditor>},
      {"frmMaterials", &setUp<Ui::frmMaterials>},
      {"frmResources", &setUp<Ui::frmResources>},
      {"frmRotate", &setUp<Ui::frmRotate>},
      {"frmZoom", &setUp<Ui::frmZoom>},
  };
  const auto form = kForms.find(name);
  if (form == kForms.end()) return nullptr;
  auto window = std::make_unique<FormWindow>();
  form->second(*window);
  window->finishSetUp();
  return window;
}

}  // namespace kestrel::qt
