#pragma once

namespace kestrel::qt {

class PanelField;

/// From now on assistive technology sees panels as texts: the name is the value that a panel shows, the
/// description what the value is. A panel without a value has the description as its name.
void useAccessiblePanels();

/// Reports that the panel's value has changed. Does nothing where there is no assistive technology.
void reportValue(PanelField& panel);

}  // namespace kestrel::qt
