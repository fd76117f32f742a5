#pragma once

#include <QPointer>
#include <memory>
#include <optional>
#include <string>

#include "FaceGraphics.h"
#include "FormControls.h"
#include "FormWindow.h"
#include "WindowPlacement.h"
#include "base/OpenCalls.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/PropertyStage.h"
#include "platform/qt/controls/WidgetControl.h"
#include "platform/qt/docking/DockableForm.h"

namespace kestrel::qt {

/// A form of the contract on its window.
class QtForm final : public WidgetControl<Form>, public PropertyStage, public DockableForm {
 public:
  /// The services must outlive the form.
  QtForm(std::unique_ptr<FormWindow> window, const std::string& name, const SiteServices& services);
  ~QtForm() override;

  Control* Find(std::string_view name, std::int32_t index) override { return controls_.find(name, index); }
  std::int32_t UBound(std::string_view name) const override { return controls_.upperBound(name); }

  std::int32_t Left() const override { return window().geometry().x(); }
  void Left(std::int32_t value) override { Move(value, Top(), Width(), Height()); }
  std::int32_t Top() const override { return window().geometry().y(); }
  void Top(std::int32_t value) override { Move(Left(), value, Width(), Height()); }
  std::int32_t Width() const override { return window().width(); }
  void Width(std::int32_t value) override { placement().resize({value, Height()}); }
  std::int32_t Height() const override { return window().height(); }
  void Height(std::int32_t value) override { placement().resize({Width(), value}); }
  void Move(std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) override {
    placement().place({left, top, width, height});
  }

  void InitializeControls() override;

  bool Visible() const override { return window_ && window_->isVisible(); }
  void Visible(bool value) override { value ? Show() : Hide(); }

  std::string Caption() const override;
  void Caption(const std::string& value) override;
  bool Modified() const override { return window().isWindowModified(); }
  void Modified(bool value) override;
  void ClearIcon() override { window().setWindowIcon(QIcon()); }
  std::int32_t WindowState() const override;
  void WindowState(std::int32_t value) override;
  Rectangle NormalPlace() const override;
  std::int32_t ScaleWidth() const override { return window().width(); }
  std::int32_t ScaleHeight() const override { return window().height(); }
  OLE_COLOR BackColor() const override;

  void Show(bool modal = false, Control* owner = nullptr) override;
  /// Shown again, a window is where it was, unless it is placed anew.
  void Hide() override;
  void Unload() override { unload(1); }
  kestrel::Graphics& Graphics() override { return graphics_; }

  void embedIn(QWidget& host) override;
  /// Raises RuntimeError 91 if the window was destroyed: by a widget that embeds it, or as a dialog by its
  /// owner.
  FormWindow& window() const {
    requireWindow();
    return *window_;
  }

 private:
  void requireWindow() const;
  WindowPlacement& placement() {
    requireWindow();
    return placement_;
  }
  void load();
  void unload(std::int32_t reason);

  // A widget that embeds the window, or the owner of a dialog, destroys it with itself.
  QPointer<FormWindow> window_;
  FormControls controls_;
  FaceGraphics graphics_;
  OpenCalls& calls_;
  WindowPlacement placement_;
  std::optional<std::string> caption_;  ///< English, if not that of the .ui file
  bool initialized_ = false;
  bool loaded_ = false;
  bool activated_ = false;
};

}  // namespace kestrel::qt
