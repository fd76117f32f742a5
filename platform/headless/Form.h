#pragma once

#include <string>

#include "ControlSet.h"
#include "FormDescription.h"
#include "Graphics.h"
#include "Window.h"
#include "imaging/contract/Form.h"
#include "imaging/contract/PropertyStage.h"

namespace kestrel::headless {

class User;

/// A form without a window. Shown modally, it is operated by the scripted user.
class Form final : public WindowOf<kestrel::Form>, public PropertyStage {
 public:
  Form(Desktop& desktop, User& user, const Surroundings& surroundings, const FormDescription& description);
  ~Form() override;

  Control* Find(std::string_view name, std::int32_t index = -1) override {
    return controls_.find(name, index);
  }
  std::int32_t UBound(std::string_view name) const override { return controls_.upperBound(name); }

  std::string Caption() const override { return caption_; }
  void Caption(const std::string& value) override { caption_ = value; }
  bool Modified() const override { return modified_; }
  void Modified(bool value) override { modified_ = value; }
  void ClearIcon() override { hasIcon_ = false; }
  bool hasIcon() const { return hasIcon_; }
  std::int32_t WindowState() const override { return windowState_; }
  void WindowState(std::int32_t value) override;
  Rectangle NormalPlace() const override { return windowState_ == kWindowNormal ? place() : normalPlace_; }

  std::int32_t ScaleWidth() const override { return Width(); }
  std::int32_t ScaleHeight() const override { return Height(); }
  OLE_COLOR BackColor() const override { return kFaceColor; }

  void InitializeControls() override;

  using WindowOf::Visible;
  /// Writing does the same as a non-modal `Show`, or `Hide`.
  void Visible(bool value) override;
  void Show(bool modal = false, kestrel::Control* owner = nullptr) override;
  void Hide() override { visible(false); }
  /// Embeds it in another window.
  void embed(Window& window);
  void Unload() override { unload(kUnloadedByCode); }

  /// The user presses the window's own close box.
  void pressCloseBox() { unload(kUnloadedByUser); }
  /// The user presses a key that no control of the form handles.
  void pressKey(std::int32_t keyCode, std::int32_t shift) { KeyDown(keyCode, shift); }

  kestrel::Graphics& Graphics() override { return graphics_; }
  const engine::Bitmap& face() const { return graphics_.face(); }

 private:
  static constexpr OLE_COLOR kFaceColor = 0x00F0F0F0;
  static constexpr std::int32_t kUnloadedByUser = 0;
  static constexpr std::int32_t kUnloadedByCode = 1;

  void resized() override;
  void load();
  void unload(std::int32_t reason);

  User& user_;
  ControlSet controls_;
  headless::Graphics graphics_;
  std::string caption_;
  bool modified_ = false;
  bool hasIcon_ = true;
  bool loaded_ = false;
  bool sitesReady_ = false;
  std::int32_t windowState_ = kWindowNormal;
  Rectangle normalPlace_;
};

}  // namespace kestrel::headless
