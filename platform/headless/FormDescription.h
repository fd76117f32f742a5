#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "imaging/contract/Types.h"

namespace kestrel::headless {

/// The class of a control; a container is a plain window that holds others.
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
  kPreview,
  kEditor,
};

/// One control as its form stores it. Fields that a class has no use for are at their initial values.
struct ControlDescription {
  ControlKind kind = ControlKind::kContainer;
  std::int32_t parent =
      -1;  ///< place of its container in the form's list, which stands before it; -1 the form
  std::string name;
  std::int32_t index = -1;  ///< in its control array, -1 if it stands alone
  std::string text;         ///< text or caption
  std::string tag;
  Rectangle place;  ///< all 0 where it has its natural size
  bool enabled = true;
  bool visible = true;
  bool checked = false;
  std::int32_t minimum = 0;
  std::int32_t maximum = 99;
  std::int32_t value = 0;
  std::vector<std::string> items;
  std::vector<std::int32_t> itemData;
  std::int32_t current = 0;  ///< chosen line of a list, counted from 0
  std::vector<std::pair<std::string, bool>> stored =
      {};  ///< the bag of a control of ours, empty for a new one
};

struct FormDescription {
  std::string name;
  std::string caption;
  Rectangle place;
  std::vector<ControlDescription> controls;
};

/// The forms of the desktop; generated from its form files when the project is built.
const std::vector<FormDescription>& formDescriptions();

}  // namespace kestrel::headless
