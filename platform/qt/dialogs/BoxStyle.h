#pragma once

#include <QMessageBox>
#include <cstdint>

namespace kestrel::qt {

// The styles and answers of `UserInterface::MessageBox` in the toolkit's terms.

/// The buttons; their order defines the number of a default button.
QList<QMessageBox::StandardButton> buttonsOf(std::int32_t style);
QMessageBox::StandardButton defaultButtonOf(std::int32_t style);
QMessageBox::Icon iconOf(std::int32_t style);
/// Any other button counts as Cancel.
std::int32_t answerOf(int button);

}  // namespace kestrel::qt
