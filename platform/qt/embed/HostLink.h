#pragma once

#include <memory>
#include <string>
#include <utility>

#include "HostServices.h"
#include "diagnostics/ErrorListener.h"
#include "imaging/contract/UserInterface.h"

namespace kestrel::qt {

/// Passes messages and errors of this thread's component to the host's object, while there is one. An
/// exception that leaves a member of that object is ignored: the component then does what it does without it.
class HostLink final : public ErrorListener {
 public:
  HostLink();
  ~HostLink() override;
  HostLink(const HostLink&) = delete;
  HostLink& operator=(const HostLink&) = delete;

  void services(std::shared_ptr<HostServices> value) { services_ = std::move(value); }
  const std::shared_ptr<HostServices>& services() const { return services_; }

  /// The host's answer; NoButton without one.
  QMessageBox::StandardButton answer(const HostMessage& message);

  bool Reported(const Error& error) override;
  void HandlerFailed(const std::exception_ptr& cause) override;

 private:
  /// An error that a callback of the toolkit cannot pass on.
  void reportStray(const std::string& description);

  std::shared_ptr<HostServices> services_;
};

/// The boxes of a component: messages go to the host first, all others are the desktop's.
class HostBoxes final : public UserInterface {
 public:
  /// `link` must outlive this object.
  HostBoxes(HostLink& link, std::unique_ptr<UserInterface> desktop)
      : link_(link), desktop_(std::move(desktop)) {}

  std::int32_t MessageBox(const std::string& text, std::int32_t style, const std::string& title,
                          WindowHandle owner) override;
  std::string InputBox(const std::string& prompt, const std::string& title, const std::string& defaultText,
                       const Point* position, WindowHandle owner) override;
  void AboutBox(const std::string& title, const std::string& versionText, const PicturePtr& picture,
                WindowHandle owner) override;

 private:
  HostLink& link_;
  std::unique_ptr<UserInterface> desktop_;
};

}  // namespace kestrel::qt
