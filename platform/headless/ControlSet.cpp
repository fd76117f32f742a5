#include "ControlSet.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "Surfaces.h"
#include "base/Numbers.h"
#include "controls/CheckBox.h"
#include "controls/ColorPicker.h"
#include "controls/ComboBox.h"
#include "controls/CommandButton.h"
#include "controls/FormHeader.h"
#include "controls/Frame.h"
#include "controls/Label.h"
#include "controls/OptionButton.h"
#include "controls/PictureBox.h"
#include "controls/Slider.h"
#include "controls/SplitPanel.h"
#include "controls/TabStrip.h"
#include "controls/TextBox.h"

namespace kestrel::headless {
namespace {

/// The rectangle of a control that its form's layout places.
constexpr Rectangle kNaturalPlace{0, 0, 100, 20};
constexpr Size kSiteSize{372, 180};

template <typename T>
std::unique_ptr<T> make(Window& parent, const ControlDescription& description) {
  return std::make_unique<T>(parent.desktop(), &parent, description.name, description.index);
}

std::unique_ptr<Window> makeComboBox(Window& parent, const ControlDescription& description) {
  auto box = make<ComboBox>(parent, description);
  std::vector<ComboBox::Entry> entries;
  for (const std::string& text : description.items) {
    const std::size_t place = entries.size();
    entries.push_back({text, place < description.itemData.size() ? description.itemData[place] : 0});
  }
  box->entries(std::move(entries));
  if (box->ListCount() > 0) box->ListIndex(description.current);
  return box;
}

std::unique_ptr<Window> makeSlider(Window& parent, const ControlDescription& description) {
  auto slider = make<Slider>(parent, description);
  slider->range(description.minimum, description.maximum);
  slider->Value(description.value);
  return slider;
}

std::unique_ptr<Window> makeColorPicker(Window& parent, const ControlDescription& description) {
  auto picker = make<ColorPicker>(parent, description);
  picker->EnhancedCaption(description.text);
  for (const auto& [name, value] : description.stored) {
    if (name == "enhancedVisible") picker->EnhancedVisible(value);
  }
  return picker;
}

std::unique_ptr<Window> makeOptionButton(Window& parent, const ControlDescription& description) {
  auto button = make<OptionButton>(parent, description);
  button->caption(description.text);
  button->tag(description.tag);
  button->Value(description.checked);
  return button;
}

std::unique_ptr<Window> makeControl(Window& parent, const ControlDescription& description,
                                    const Surroundings& surroundings) {
  switch (description.kind) {
    case ControlKind::kTextBox: {
      auto box = make<TextBox>(parent, description);
      box->Text(description.text);
      return box;
    }
    case ControlKind::kLabel: {
      auto label = make<Label>(parent, description);
      label->Caption(description.text);
      return label;
    }
    case ControlKind::kCheckBox: {
      auto box = make<CheckBox>(parent, description);
      box->Caption(description.text);
      box->Value(description.checked ? 1 : 0);
      return box;
    }
    case ControlKind::kCommandButton: {
      auto button = make<CommandButton>(parent, description);
      button->caption(description.text);
      button->Pressed(description.checked);
      return button;
    }
    case ControlKind::kFrame: {
      auto frame = make<Frame>(parent, description);
      frame->caption(description.text);
      return frame;
    }
    case ControlKind::kTabStrip: {
      auto strip = make<TabStrip>(parent, description);
      strip->captions(description.items);
      return strip;
    }
    case ControlKind::kOptionButton:
      return makeOptionButton(parent, description);
    case ControlKind::kComboBox:
      return makeComboBox(parent, description);
    case ControlKind::kSlider:
      return makeSlider(parent, description);
    case ControlKind::kColorPicker:
      return makeColorPicker(parent, description);
    case ControlKind::kPreview:
      return makePreviewSite(parent.desktop(), &parent, description.name, surroundings);
    case ControlKind::kEditor:
      return makeEditorSite(parent.desktop(), &parent, description.name, true, surroundings);
    case ControlKind::kBrowser:
      return makeBrowserSite(parent.desktop(), &parent, description.name, true, surroundings);
    case ControlKind::kFormHeader:
      return make<FormHeader>(parent, description);
    case ControlKind::kPictureBox:
      return make<PictureBox>(parent, description);
    case ControlKind::kSplitPanel:
      return make<SplitPanel>(parent, description);
    case ControlKind::kContainer:
      return make<Window>(parent, description);
  }
  std::abort();
}

}  // namespace

void ControlSet::build(Window& container, const std::vector<ControlDescription>& descriptions,
                       const Surroundings& surroundings) {
  const std::size_t first = windows_.size();
  for (const ControlDescription& description : descriptions) {
    Window& parent =
        description.parent < 0 ? container : *windows_[first + static_cast<std::size_t>(description.parent)];
    auto window = makeControl(parent, description, surroundings);
    window->place(description.place == Rectangle{} ? kNaturalPlace : description.place);
    window->enabled(description.enabled);
    window->visible(description.visible);
    if (auto* site = dynamic_cast<Site*>(window.get())) ownControls_.push_back({*site, description.stored});
    windows_.push_back(std::move(window));
  }
}

void ControlSet::add(std::unique_ptr<Window> window) { windows_.push_back(std::move(window)); }

Control* ControlSet::find(std::string_view name, std::int32_t index) const {
  for (const auto& window : windows_) {
    if (window->index() != index || !EqualIgnoringCase(window->name(), name)) continue;
    if (auto* control = dynamic_cast<Control*>(window.get())) return control;
  }
  return nullptr;
}

void ControlSet::initializeSites() {
  for (const OwnControl& own : ownControls_) {
    own.site.initialize(own.stored);
    own.site.place({0, 0, kSiteSize.Width, kSiteSize.Height});
  }
}

std::int32_t ControlSet::upperBound(std::string_view name) const {
  std::int32_t highest = -1;
  for (const auto& window : windows_) {
    if (EqualIgnoringCase(window->name(), name)) highest = std::max(highest, window->index());
  }
  return highest;
}

}  // namespace kestrel::headless
