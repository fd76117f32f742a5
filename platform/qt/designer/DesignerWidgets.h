#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <memory>

namespace kestrel::qt {

/// The plugin: the editor and the browser for forms.
class DesignerWidgets final : public QObject, public QDesignerCustomWidgetCollectionInterface {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
  Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

 public:
  DesignerWidgets();
  QList<QDesignerCustomWidgetInterface*> customWidgets() const override;

 private:
  std::unique_ptr<QDesignerCustomWidgetInterface> editor_;
  std::unique_ptr<QDesignerCustomWidgetInterface> browser_;
};

}  // namespace kestrel::qt
