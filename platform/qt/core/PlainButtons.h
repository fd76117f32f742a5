#pragma once

#include <QWidget>

namespace kestrel::qt {

/// Shows the buttons of a dialog as the forms show theirs: with a text and no icon. The toolkit gives its
/// standard buttons icons on some desktops, and so two styles to one program. Holds for the boxes that the
/// dialog opens, too. Call before it is shown.
void usePlainButtons(QWidget& dialog);

}  // namespace kestrel::qt
