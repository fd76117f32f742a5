#include "HostLink.h"

#include <cstdio>
#include <utility>

#include "base/DescribedError.h"
#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Text.h"
#include "platform/qt/dialogs/BoxStyle.h"
#include "platform/qt/dialogs/Modal.h"
#include "platform/qt/services/BusyPointer.h"
#include "settings/modProcessing.h"

namespace kestrel::qt {
namespace {

/// Calls a member of the host's object, which may destroy editors and replace the object: so this keeps it.
/// The value without an object, and for a member that fails: there is nobody else to hear of its failure.
template <typename Result, typename Call>
Result ask(std::shared_ptr<HostServices> services, Result otherwise, Call call) {
  const auto kept = std::move(services);
  if (!kept) return otherwise;
  try {
    const OpenCalls::Call open(modProcessing::Platform().Calls);
    return call(*kept);
  } catch (...) {
    return otherwise;
  }
}

}  // namespace

HostLink::HostLink() {
  Attach(this);
  setStrayErrorHandler([this](const std::string& description) { reportStray(description); });
}

HostLink::~HostLink() {
  setStrayErrorHandler(nullptr);
  Attach(nullptr);
}

QMessageBox::StandardButton HostLink::answer(const HostMessage& message) {
  return ask(services_, QMessageBox::NoButton, [&](HostServices& host) { return host.message(message); });
}

bool HostLink::Reported(const Error& error) {
  return ask(services_, false, [&](HostServices& host) {
    return host.error({error.Number, translated(error.Description), toQt(error.Module), toQt(error.Procedure),
                       error.Line, error.Cause});
  });
}

void HostLink::HandlerFailed(const std::exception_ptr& cause) {
  ask(services_, true, [&](HostServices& host) {
    host.handlerFailed(cause);
    return true;
  });
}

void HostLink::reportStray(const std::string& description) {
  const DescribedError error = DescribeCurrentError();
  if (Reported({error.Number, {}, {}, 0, description, std::current_exception()})) return;
  std::fprintf(stderr, "%s\n", description.c_str());
}

std::int32_t HostBoxes::MessageBox(const std::string& text, std::int32_t style, const std::string& title,
                                   WindowHandle owner) {
  if (link_.services()) {
    const BusyPause pause;
    const std::string name = title.empty() ? modProcessing::Platform().App().Title() : title;
    HostMessage message{withLineFeeds(translated(text)), translated(name),   iconOf(style), {},
                        defaultButtonOf(style),          dialogParent(owner)};
    for (const auto button : buttonsOf(style)) message.buttons |= button;
    const QMessageBox::StandardButton answer = link_.answer(message);
    if (answer != QMessageBox::NoButton) return answerOf(answer);
  }
  return desktop_->MessageBox(text, style, title, owner);
}

std::string HostBoxes::InputBox(const std::string& prompt, const std::string& title,
                                const std::string& defaultText, const Point* position, WindowHandle owner) {
  return desktop_->InputBox(prompt, title, defaultText, position, owner);
}

void HostBoxes::AboutBox(const std::string& title, const std::string& versionText, const PicturePtr& picture,
                         WindowHandle owner) {
  desktop_->AboutBox(title, versionText, picture, owner);
}

}  // namespace kestrel::qt
