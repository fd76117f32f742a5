#include "Form.h"

#include <utility>

#include "Surfaces.h"
#include "User.h"
#include "base/RuntimeError.h"

namespace kestrel::headless {
namespace {

constexpr Rectangle kNaturalPlace{0, 0, 400, 300};

}  // namespace

Form::Form(Desktop& desktop, User& user, const Surroundings& surroundings, const FormDescription& description)
    : WindowOf(desktop, nullptr, description.name, -1), user_(user), caption_(description.caption) {
  visible(false);
  place(description.place == Rectangle{} ? kNaturalPlace : description.place);
  controls_.build(*this, description.controls, surroundings);
}

Form::~Form() = default;

void Form::WindowState(std::int32_t value) {
  if (value < kWindowNormal || value > kWindowMaximized) {
    throw RuntimeError(err::kInvalidPropertyValue, "A window has no state " + std::to_string(value) + ".");
  }
  if (windowState_ == kWindowNormal) normalPlace_ = place();
  windowState_ = value;
}

void Form::Visible(bool value) {
  if (value == visible()) return;
  if (value) {
    Show();
  } else {
    Hide();
  }
}

void Form::Show(bool modal, kestrel::Control* /*owner*/) {
  if (modal && visible()) {
    throw RuntimeError(400, "The window \"" + caption_ + "\" is shown already and can't be shown modally.");
  }
  load();
  visible(true);
  layOutChildren();
  Activate();
  Paint();
  if (modal && visible()) user_.useForm(*this);
}

void Form::embed(Window& window) {
  load();
  host(&window);
  visible(true);
  Paint();
}

void Form::load() {
  if (loaded_) return;
  loaded_ = true;
  InitializeControls();
  Load();
}

void Form::InitializeControls() {
  if (!std::exchange(sitesReady_, true)) controls_.initializeSites();
}

void Form::unload(std::int32_t reason) {
  if (!loaded_) return;
  bool cancel = false;
  QueryUnload(cancel, reason);
  if (cancel || !loaded_) return;
  Hide();
  loaded_ = false;
  Unloaded();
}

void Form::resized() {
  graphics_.resize(Width(), Height());
  Resize();
}

}  // namespace kestrel::headless
