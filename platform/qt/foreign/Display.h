#pragma once

namespace kestrel::qt {

/// Whether the toolkit's application object will find a display: without one it would end the program.
bool hasDisplay();

}  // namespace kestrel::qt
