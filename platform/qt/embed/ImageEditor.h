#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QWidget>
#include <cstdint>
#include <memory>
#include <optional>

#include "Component.h"
#include "editor/interface/IImageProcessingCtl.h"
#include "imaging/contract/Formats.h"

namespace kestrel {
class PropertyBag;
}

namespace kestrel::qt {

/// The image editor as a widget for any window or layout.
///
/// The host calls `control().Initialize()` once and then uses the control. An editor of a form, made by the
/// toolkit's designer, initializes itself when it is first shown, unless the host has done so before.
///
/// The properties are those that `save` stores, with the same defaults. The signals are the control's events,
/// before the handlers that a host connects to these; arguments that are references are in-out arguments, so
/// connect them directly.
///
/// The host may destroy the widget, or its window, at any time: in every event of the control, in the calls
/// of its sink, and while a dialog of the editor is open. After the destructor no event is raised and no
/// object of the host is used. Open dialogs close, and the member that showed one returns as if the user had
/// canceled it.
///
/// Where the editor itself is closed, as a window or in a sub-window of the toolkit's MDI area, it asks the
/// user about unsaved changes, and stays open if the user cancels. A host with the editor deeper in its
/// window asks by `control().SaveChanges()` before it closes that.
class ImageEditor final : public QWidget {
  Q_OBJECT
  Q_PROPERTY(bool allowUnmodifiedHotKeys READ allowUnmodifiedHotKeys WRITE setAllowUnmodifiedHotKeys)
  Q_PROPERTY(bool useSimpleTools READ useSimpleTools WRITE setUseSimpleTools)
  Q_PROPERTY(bool showDrawingTools READ showDrawingTools WRITE setShowDrawingTools)
  Q_PROPERTY(bool useSimpleSave READ useSimpleSave WRITE setUseSimpleSave)
  Q_PROPERTY(bool showClose READ showClose WRITE setShowClose)
  /// Also sets `showMRU`.
  Q_PROPERTY(bool showOpen READ showOpen WRITE setShowOpen)
  Q_PROPERTY(bool showMRU READ showMRU WRITE setShowMRU)
  Q_PROPERTY(bool showMenuBar READ showMenuBar WRITE setShowMenuBar)
  Q_PROPERTY(bool autoUpdateGlobal READ autoUpdateGlobal WRITE setAutoUpdateGlobal)
  Q_PROPERTY(bool acceptFiles READ acceptFiles WRITE setAcceptFiles)
  /// Whether unsaved changes are kept on disk, so that the user can recover them after a crash; false by
  /// default, since a host may have its own way. Not stored.
  Q_PROPERTY(bool keepsChanges READ keepsChanges WRITE setKeepsChanges)
  /// Whether closing the editor asks about unsaved changes; true by default. Not stored.
  Q_PROPERTY(bool asksOnClose READ asksOnClose WRITE setAsksOnClose)

 public:
  /// Whether the editor is used, or is on a form that is being designed.
  enum class Mode { kRunning, kDesigning };

  /// A new control, or one with the host's stored properties. Raises RuntimeError 321 if the stored layout in
  /// the program is damaged.
  explicit ImageEditor(Component& component, const PropertyBag* stored = nullptr, QWidget* parent = nullptr);
  /// For forms: the editor has a component of its own. Raises as above.
  explicit ImageEditor(QWidget* parent = nullptr, Mode mode = Mode::kRunning);
  ~ImageEditor() override;

  IImageProcessingCtl& control();

  // The control's properties; see `IImageProcessingCtl`.
  bool allowUnmodifiedHotKeys() const;
  void setAllowUnmodifiedHotKeys(bool value);
  bool useSimpleTools() const;
  void setUseSimpleTools(bool value);
  bool showDrawingTools() const;
  void setShowDrawingTools(bool value);
  bool useSimpleSave() const;
  void setUseSimpleSave(bool value);
  bool showClose() const;
  void setShowClose(bool value);
  bool showOpen() const;
  void setShowOpen(bool value);
  bool showMRU() const;
  void setShowMRU(bool value);
  bool showMenuBar() const;
  void setShowMenuBar(bool value);
  bool autoUpdateGlobal() const;
  void setAutoUpdateGlobal(bool value);

  /// Whether the user may open a picture by dropping its file on the editor; on at first. While `ShowOpen` is
  /// off, files are not taken in any case. As with the command Open, the user is asked about unsaved changes.
  bool acceptFiles() const;
  void setAcceptFiles(bool value);

  bool keepsChanges() const;
  void setKeepsChanges(bool value);
  bool asksOnClose() const { return asksOnClose_; }
  void setAsksOnClose(bool value) { asksOnClose_ = value; }

  // -- Pictures in memory. The members raise RuntimeError, as documented for each, and then change nothing.
  // --

  /// The picture, without the floating image of an open paste: RGBA with straight alpha, in sRGB, with the
  /// resolution that its file had. Nothing is copied before one of the two is changed. Null without a
  /// picture.
  QImage picture();
  /// Shows a picture as `control().Picture` does, so `Filename` stays and `PictureSet` is raised. It is
  /// converted to sRGB from its color space; a save writes its resolution. A null image removes the picture.
  /// Does not ask about unsaved changes. Raises 7 for an image that is too large.
  void setPicture(const QImage& picture);

  /// The picture as a file of the format, one of `format::kPng` and so on, with the resolution and the
  /// metadata of the file that it came from. What the format does not keep of the transparency is composited
  /// over white. `jpegQuality` is 1 to 100, or -1 for the user's setting. Raises 91 without a picture, 5 for
  /// a format that cannot be written and for another quality.
  QByteArray encodedPicture(std::int32_t format, int jpegQuality = -1);
  /// Shows the picture of a file in memory as `OpenImage` shows that of a file: recognized by its content,
  /// upright, in sRGB, with the notice above it if it is incomplete. `Filename` stays; `PictureSet` is
  /// raised, but not `ImageOpen`. Does not ask about unsaved changes. Raises 481 with a sentence for the user
  /// if it is not a readable picture, 7 if it is too large.
  void setEncodedPicture(const QByteArray& file);

  /// Stores the control's properties.
  void save(PropertyBag& bag);

 Q_SIGNALS:
  /// A property of the control has changed: a host that stores properties calls `save`.
  void propertyChanged(const QString& name);

  // The control's events; see `ImageProcessingCtlEvents`.
  /// The host closes the editor. One that keeps it must not hide it from now on, not even in a tab of its
  /// window: hiding ends the control.
  void exitRequested();
  void imageOpened(const QString& filename);
  void imageSaved(const QString& filename);
  void openFilenameRequested(QString& filename, bool& cancelDefault);
  void saveFilenameRequested(QString& filename, bool& cancelDefault);
  void foreColorChanged(const QColor& color);
  /// An invalid color for no fill.
  void backColorChanged(const QColor& color);
  /// One of `ImageProcessingToolConstants`.
  void toolChanged(int tool);
  void pictureSet();
  void simpleSaveRequested(bool& saved);
  void changed();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  struct Inside;
  void start(const PropertyBag* stored);
  void connectEvents();

  /// Of an editor on a form.
  std::optional<Component> own_;
  Component& component_;
  std::unique_ptr<Inside> inside_;
  bool asksOnClose_ = true;
};

}  // namespace kestrel::qt
