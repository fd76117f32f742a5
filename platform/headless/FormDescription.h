#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "imaging/contract/Types.h"

namespace kestrel::headless {

/// The class of a control; a container is a plain window with child controls.
enum class ControlKind {
  kContainer,
  kTextBox,
  kLabel,
  kCheckBox,
  kOptionButton,
  kComboBox,
  kSlider,
  kTabStrip,
  kCommandButton,
  kFrame,
  kColorPicker,
  kFormHeader,
  kPictureBox,
  kSplitPanel,
  kPreview,
  kEditor,
  kBrowser,
};

/// One control as stored in its form. Fields that do not apply to a class have their initial values.
struct ControlDescription {
  ControlKind kind = ControlKind::kContainer;
  std::int32_t parent = -1;  ///< index of its container, listed earlier; -1: the form
  std::string name;
  std::int32_t index = -1;  ///< in its control array, -1 if it is not in one
  std::string text;         ///< text or caption
  std::string tag;
  Rectangle place;  ///< all 0 for its natural size
  bool enabled = true;
  bool visible = true;
  bool checked = false;
  std::int32_t minimum = 0;
  std::int32_t maximum = 99;
  std::int32_t value = 0;
  std::vector<std::string> items;
  std::vector<std::int32_t> itemData;
  std::int32_t current = 0;  ///< selected line of a list, counted from 0
  std::vector<std::pair<std::string, bool>> stored =
      {};  ///< property bag of our own control, empty for a new one
};

struct FormDescription {
  std::string name;
  std::string caption;
  Rectangle place;
  std::vector<ControlDescription> controls;
};

/// The forms of the desktop; generated from the form files at build time.
const std::vector<FormDescription>& formDescriptions();

}  // namespace kestrel::headless
