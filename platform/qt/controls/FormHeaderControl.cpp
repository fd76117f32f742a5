#include "FormHeaderControl.h"

#include "platform/qt/core/Guard.h"
#include "platform/qt/core/Text.h"

namespace kestrel::qt {

FormHeaderControl::FormHeaderControl(FormHeaderWidget& header, ControlId id)
    : WidgetControl(header, std::move(id)), header_(header) {
  const auto listen = [this](auto signal, auto raise) {
    QObject::connect(&header_, signal, receiver(), raise);
  };
  listen(&FormHeaderWidget::okClicked, [this] { guarded([this] { OKClick(); }); });
  listen(&FormHeaderWidget::cancelClicked, [this] { guarded([this] { CancelClick(); }); });
  listen(&FormHeaderWidget::laidOut, [this](const QRect& client) {
    guarded([&] { Resize(client.x(), client.y(), client.width(), client.height()); });
  });
}

std::string FormHeaderControl::Title() const { return fromQt(header_.title()); }

}  // namespace kestrel::qt
