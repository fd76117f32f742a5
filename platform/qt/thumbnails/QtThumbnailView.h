#pragma once

#include <QTimer>
#include <memory>
#include <string>

#include "platform/qt/controls/WidgetControl.h"
#include "platform/qt/site/SiteServices.h"
#include "platform/thumbnailview/ThumbnailViewModel.h"

namespace kestrel::qt {

class FileTraffic;
class PostedCalls;
class ThumbnailArea;

/// The thumbnail view on the desktop.
class QtThumbnailView final : public WidgetControl<thumbnails::ThumbnailViewModel> {
 public:
  /// The area outlives the view or is destroyed with it. The services must outlive both.
  QtThumbnailView(ThumbnailArea& area, ControlId id, const SiteServices& services);
  ~QtThumbnailView() override;

  ThumbnailArea& area() { return area_; }

  /// Begins at `start`; without one at the folder that was chosen last, or else at the shown one.
  std::string BrowseForFolder(const std::string& prompt, const std::string& title,
                              const std::string& start) override;

 protected:
  void invalidate(const Rectangle& area) override;
  void scrollChanged() override;
  void autoScroll(bool on) override;
  void beginDrag() override;
  void itemsChanged() override;
  void selectionChanged() override;
  void focusItemChanged() override;

 private:
  QtThumbnailView(ThumbnailArea& area, ControlId id, const SiteServices& services,
                  std::unique_ptr<PostedCalls> calls);

  ThumbnailArea& area_;
  OpenCalls& openCalls_;
  std::unique_ptr<PostedCalls> posted_;
  std::unique_ptr<FileTraffic> files_;
  QTimer autoScroll_;
  std::string chosenFolder_;
};

}  // namespace kestrel::qt
