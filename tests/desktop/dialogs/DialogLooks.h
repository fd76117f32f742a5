#pragma once

#include <QWidget>
#include <functional>
#include <string>

namespace kestrel::desktop {

/// A look of the desktop under which a dialog must be readable.
struct Look {
  bool dark = false;
  bool doubleFont = false;  ///< the system's font at twice its size
  bool longTexts = false;   ///< texts 40 percent longer than the English ones, as in German

  /// "light-long", for names of files.
  std::string name() const;
};

/// Opens a dialog once in each look, writes a screenshot "NAME-LOOK@SCALE.png" to the build folder, and
/// expects that nothing is cut off. The dialog is canceled.
///
/// `open` shows the dialog and returns when it is closed. `prepare` runs in the open dialog before the
/// screenshot.
void expectGoodLooks(const std::string& name, const std::function<void()>& open,
                     const std::function<void(QWidget&)>& prepare = {});

/// All texts of the window's visible controls fit, and no control lies outside its container or over another.
void expectNothingCutOff(QWidget& window);

/// Every control that takes the focus has a name for screen readers, a caption or a label.
void expectAccessibleNames(QWidget& window);

/// No two controls have the same access key, but for those of `shared`, in upper case.
void expectAccessKeys(QWidget& window, const QString& shared = {});

}  // namespace kestrel::desktop
