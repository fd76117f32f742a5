#pragma once

class QWidget;

namespace kestrel::qt {

/// Makes the access keys (Alt with the underlined letter) of a form's labels, buttons and boxes unique: of
/// several controls with the same key the first keeps it, and each other gets another letter of its text,
/// initials first, or none. Hidden controls do not count. The texts stay the same apart from their marks.
void separateAccessKeys(QWidget& form);

}  // namespace kestrel::qt
