#include <QApplication>

#include <kestrel/Component.h>
#include <kestrel/ImageProcessing.h>
#include <kestrel/base/RuntimeError.h>

// automation PICTURE: shows a picture in a window of the automation class and ends the window.
int main(int argc, char** argv) {
  if (argc != 2) return 2;
  QApplication application(argc, argv);
  kestrel::qt::Component component;
  kestrel::ImageProcessing editor;
  std::string opened;
  const kestrel::Connection connection =
      editor.ImageOpen.Connect([&](const std::string& file) { opened = file; });
  editor.Initialize();
  editor.Show();
  if (!editor.OpenImage(argv[1]) || opened != argv[1] || !editor.Visible()) return 1;
  editor.Terminate();
  try {
    editor.SelectAll();
  } catch (const kestrel::RuntimeError& error) {
    return error.Number() == 91 ? 0 : 1;
  }
  return 1;
}
