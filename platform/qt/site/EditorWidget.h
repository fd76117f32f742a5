#pragma once

#include <memory>

#include "QtSite.h"
#include "SiteWidget.h"

namespace kestrel::engine {
class ClipboardPort;
}

namespace kestrel::qt {

class QtImageView;
class QtMoorage;

/// The window of an image editor, for a host to put into a window of its own: the docking suite "mrgUI" and
/// the image view "igxImage", and the site on which the editor's logic is made.
class EditorWidget final : public SiteWidget {
  Q_OBJECT

 public:
  /// The clipboard must outlive the widget. Raises RuntimeError 321 for a damaged stored layout.
  explicit EditorWidget(engine::ClipboardPort& clipboard, bool userMode = true, QWidget* parent = nullptr);
  ~EditorWidget() override;

  /// What is made on it must die before the widget.
  QtSite& site() { return *site_; }
  QtMoorage& moorage() { return *moorage_; }
  QtImageView& view() { return *view_; }

  QSize sizeHint() const override { return {1100, 760}; }

 private:
  std::unique_ptr<QtSite> site_;
  // Owned by the site.
  QtMoorage* moorage_;
  QtImageView* view_;
};

}  // namespace kestrel::qt
