#include "DisplayControls.h"

#include "platform/qt/core/Language.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {

std::string LabelControl::Caption() const { return fromQt(label_.text()); }

LabelControl::LabelControl(QLabel& label, ControlId id) : WidgetControl(label, std::move(id)), label_(label) {
  keepTranslated(label_, *receiver(), [this] {
    if (caption_) Caption(*caption_);
  });
}

void LabelControl::Caption(const std::string& value) {
  caption_ = value;
  label_.setText(translated(value));
}

std::string FrameControl::Caption() const { return fromQt(frame_.title()); }

}  // namespace kestrel::qt
