#include "DisplayControls.h"

#include "platform/qt/core/Text.h"

namespace kestrel::qt {

std::string LabelControl::Caption() const { return fromQt(label_.text()); }

void LabelControl::Caption(const std::string& value) { label_.setText(translated(value)); }

std::string FrameControl::Caption() const { return fromQt(frame_.title()); }

}  // namespace kestrel::qt
