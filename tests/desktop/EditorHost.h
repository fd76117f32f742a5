#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QPointer>
#include <QTemporaryDir>
#include <fstream>
#include <string>

#include "EditorBench.h"

namespace kestrel::desktop {

/// A host with an editor and a folder of its own, with the picture "open.png" and with "damaged.png", which
/// is none.
class EditorHost : public testing::Test {
 protected:
  EditorHost() {
    noise(40, 30).save(QString::fromStdString(file("open.png")));
    std::ofstream(file("damaged.png")) << "no picture";
  }

  std::string file(const char* name) const { return folder_.filePath(QLatin1String(name)).toStdString(); }

  qt::ViewCanvas& canvas() { return widget_->view()->surface().canvas(); }
  QAction& action(const char* name) {
    return widget_->moorage()->actions().actionOf(widget_->moorage()->Commands().Item(name));
  }
  /// Activates the editor's window with the focus in the view.
  void focusView() {
    QApplication::setActiveWindow(widget_->window());
    canvas().setFocus();
    settle();
  }

  const QTemporaryDir folder_;
  QPointer<qt::EditorWidget> widget_;
};

}  // namespace kestrel::desktop
