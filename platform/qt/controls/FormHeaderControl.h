#pragma once

#include "FormHeaderWidget.h"
#include "WidgetControl.h"
#include "imaging/contract/controls/FormHeader.h"

namespace kestrel::qt {

class FormHeaderControl final : public WidgetControl<FormHeader> {
 public:
  FormHeaderControl(FormHeaderWidget& header, ControlId id);

  std::string Title() const override;
  bool OKEnabled() const override { return header_.ok().isEnabledTo(&header_); }
  void OKEnabled(bool value) override { header_.ok().setEnabled(value); }
  void PressOK() override { header_.ok().click(); }
  void PressCancel() override { header_.cancel().click(); }

 private:
  FormHeaderWidget& header_;
};

}  // namespace kestrel::qt
