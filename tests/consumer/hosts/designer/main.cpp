#include <QApplication>
#include <QDir>
#include <QFile>
#include <QIcon>
#include <QLabel>
#include <QPluginLoader>
#include <QUiLoader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <iostream>
#include <memory>

#include "ui_form.h"

namespace {

using kestrel::qt::ImageEditor;

int failures = 0;

void check(bool holds, const char* rule) {
  if (holds) return;
  std::cout << "Not so: " << rule << "\n";
  ++failures;
}

/// A form that is shown works without a further call, with the properties and connections of its file.
void useForm(QWidget& form, const QString& picture) {
  auto* const editor = form.findChild<ImageEditor*>(QStringLiteral("imageEditor"));
  auto* const label = form.findChild<QLabel*>(QStringLiteral("opened"));
  check(editor != nullptr && label != nullptr, "a form has its editor and its label");
  if (editor == nullptr || label == nullptr) return;
  check(editor->showMenuBar() && editor->control().ShowMenuBar(),
        "the property showMenuBar is that of the form");
  check(!editor->showOpen(), "the property showOpen is that of the form");
  check(editor->showClose() == false && editor->showDrawingTools(), "the others have the defaults");
  form.show();
  QApplication::processEvents();
  check(editor->control().BrowseDialog() != nullptr, "an editor on a form initializes itself");
  check(editor->control().OpenImage(picture.toStdString()), "it opens a picture");
  check(label->text() == picture, "the event ImageOpen is a signal");
}

void loadForm(const QString& plugins, const QString& picture) {
  QUiLoader loader;
  loader.clearPluginPaths();
  loader.addPluginPath(plugins);
  check(loader.availableWidgets().contains(QStringLiteral("kestrel::qt::ImageBrowser")),
        "the loader knows the browser");
  QFile file(QStringLiteral(FORM));
  check(file.open(QIODevice::ReadOnly), "the form is there");
  const std::unique_ptr<QWidget> form(loader.load(&file));
  check(form != nullptr, "the form is loaded");
  if (form) useForm(*form, picture);
}

void design(const QString& plugins) {
  const QStringList files = QDir(plugins).entryList({QStringLiteral("*.so")}, QDir::Files);
  check(files.size() == 1, "there is one plugin");
  if (files.isEmpty()) return;
  QPluginLoader loader(plugins + u'/' + files.first());
  auto* const collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(loader.instance());
  check(collection != nullptr && collection->customWidgets().size() == 2, "the plugin has two classes");
  if (collection == nullptr) return;
  for (QDesignerCustomWidgetInterface* const one : collection->customWidgets()) {
    check(!one->icon().pixmap(32).isNull(), "a class has an icon");
    check(!one->toolTip().isEmpty() && !one->whatsThis().isEmpty(),
          "a class has a tool tip and a description");
    check(one->domXml().contains(one->name()), "a new widget is of the class");
    one->initialize(nullptr);
    check(one->isInitialized(), "the class is initialized once");
    const std::unique_ptr<QWidget> widget(one->createWidget(nullptr));
    check(widget != nullptr, "the designer gets a widget");
    if (!widget) continue;
    widget->show();
    QApplication::processEvents();
    check(!widget->grab().isNull(), "it is painted");
    if (auto* const editor = qobject_cast<ImageEditor*>(widget.get())) {
      check(editor->control().BrowseDialog() == nullptr, "an editor that is being designed has no dialogs");
    }
  }
}

}  // namespace

// designer_host PLUGINS PICTURE
int main(int argc, char** argv) {
  if (argc != 3) return 2;
  QApplication application(argc, argv);
  const QString plugins = QString::fromLocal8Bit(argv[1]);
  const QString picture = QString::fromLocal8Bit(argv[2]);
  {
    QWidget window;
    Ui::Form form;
    form.setupUi(&window);
    useForm(window, picture);
  }
  loadForm(plugins, picture);
  design(plugins);
  return failures == 0 ? 0 : 1;
}
