#pragma once

#include <QWidget>
#include <memory>

#include "Component.h"
#include "editor/interface/IImageProcessingCtl.h"

namespace kestrel {
class PropertyBag;
}

namespace kestrel::qt {

/// The image editor as a widget for any window or layout.
///
/// The host calls `control().Initialize()` once and then uses the control.
///
/// The host may destroy the widget, or its window, at any time: in every event of the control, in the calls
/// of its sink, and while a dialog of the editor is open. After the destructor no event is raised and no
/// object of the host is used. Open dialogs close, and the member that showed one returns as if the user had
/// canceled it.
class ImageEditor final : public QWidget {
  Q_OBJECT
  Q_PROPERTY(bool acceptFiles READ acceptFiles WRITE setAcceptFiles)
  /// Whether unsaved changes are kept on disk, so that the user can recover them after a crash; false by
  /// default, since a host may have its own way. Not stored.
  Q_PROPERTY(bool keepsChanges READ keepsChanges WRITE setKeepsChanges)

 public:
  /// A new control, or one with the host's stored properties. Raises RuntimeError 321 if the stored layout in
  /// the program is damaged.
  explicit ImageEditor(Component& component, const PropertyBag* stored = nullptr, QWidget* parent = nullptr);
  ~ImageEditor() override;

  IImageProcessingCtl& control();

  /// Whether the user may open a picture by dropping its file on the editor; on at first. While `ShowOpen` is
  /// off, files are not taken in any case. As with the command Open, the user is asked about unsaved changes.
  bool acceptFiles() const;
  void setAcceptFiles(bool value);

  bool keepsChanges() const;
  void setKeepsChanges(bool value);

  /// Stores the control's properties.
  void save(PropertyBag& bag);

 Q_SIGNALS:
  /// A property of the control has changed: a host that stores properties calls `save`.
  void propertyChanged(const QString& name);

 private:
  struct Inside;
  Component& component_;
  std::unique_ptr<Inside> inside_;
};

}  // namespace kestrel::qt
