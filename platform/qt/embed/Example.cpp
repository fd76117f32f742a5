#include <QApplication>

#include "platform/qt/embed/ImageEditor.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  kestrel::qt::Component component;            // once per process
  kestrel::qt::ImageEditor editor(component);  // a widget like any other
  editor.control().ShowMenuBar(true);
  editor.control().Initialize();
  editor.show();
  if (argc > 1) editor.control().OpenImage(argv[1]);
  return QApplication::exec();
}
