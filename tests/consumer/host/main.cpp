#include <QApplication>
#include <QVBoxLayout>

#include "platform/qt/embed/ImageEditor.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  kestrel::qt::Component component;
  QWidget window;
  QVBoxLayout layout(&window);
  auto* const editor = new kestrel::qt::ImageEditor(component);
  layout.addWidget(editor);
  editor->control().Initialize();
  const bool opened = argc > 1 && editor->control().OpenImage(argv[1]);
  window.show();
  QApplication::processEvents();
  return opened ? 0 : 1;
}
