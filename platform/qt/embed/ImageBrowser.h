#pragma once

#include <QWidget>
#include <memory>
#include <optional>

#include "Component.h"
#include "browser/interface/IImageBrowserCtl.h"

namespace kestrel {
class PropertyBag;
}

namespace kestrel::qt {

/// The image browser as a widget for any window or layout.
///
/// Actions of the widget (`QWidget::addAction`) are shown last in the context menu of thumbnails; the
/// selected files are in `control().SelectedItems()`.
///
/// The host may destroy the widget, or its window, at any time: in every event and signal, and while a window
/// of the browser is open. After the destructor no event is raised, no signal is emitted and no object of the
/// host is used. Open windows close; an operation on files ends as if the user had canceled it.
class ImageBrowser final : public QWidget {
  Q_OBJECT
  /// Stored, as the only property.
  Q_PROPERTY(bool showMenuBar READ showMenuBar WRITE setShowMenuBar)

 public:
  /// Whether the browser is used, or is on a form that is being designed.
  enum class Mode { kRunning, kDesigning };

  /// A new control, or one with the host's stored properties. Raises RuntimeError 321 if the stored layout in
  /// the program is damaged.
  explicit ImageBrowser(Component& component, const PropertyBag* stored = nullptr, QWidget* parent = nullptr);
  /// For forms: the browser has a component of its own. Raises as above.
  explicit ImageBrowser(QWidget* parent = nullptr, Mode mode = Mode::kRunning);
  ~ImageBrowser() override;

  IImageBrowserCtl& control();

  /// The control's property.
  bool showMenuBar() const;
  void setShowMenuBar(bool value);

  /// Stores the control's properties.
  void save(PropertyBag& bag);

 Q_SIGNALS:
  /// A property of the control has changed: a host that stores properties calls `save`.
  void propertyChanged(const QString& name);
  /// The user has pressed Enter on a thumbnail.
  void fileOpened(const QString& file);
  // The control's events; see `ImageBrowserCtlEvents`.
  void pathChanged(const QString& path);
  void exitRequested();
  void invalidPathChanged();

 protected:
  void actionEvent(QActionEvent* event) override;

 private:
  struct Inside;
  void start(const PropertyBag* stored);

  /// Of a browser on a form.
  std::optional<Component> own_;
  Component& component_;
  std::unique_ptr<Inside> inside_;
};

}  // namespace kestrel::qt
