#include "Surfaces.h"

#include <cstdint>
#include <span>
#include <utility>

#include "ImageView.h"
#include "Moorage.h"
#include "Resources/Layouts.h"
#include "Resources/StockPicture.h"
#include "controls/FolderNotices.h"
#include "controls/PictureBox.h"
#include "controls/SplitPanel.h"
#include "controls/ThumbnailView.h"
#include "controls/TreeView.h"
#include "engine/codecs/Codecs.h"
#include "engine/imgx/PictureObject.h"
#include "imaging/contract/FolderTreeImages.h"
#include "platform/docking/LayoutReader.h"

namespace kestrel::headless {
namespace {

void addView(Site& site, const char* name, const Surroundings& surroundings) {
  site.add(
      std::make_unique<ImageView>(site.desktop(), &site, name, surroundings.clipboard, surroundings.files));
}

PicturePtr stockPicture() {
  const std::span<const std::byte> file = resources::stockPicture();
  return std::make_shared<engine::PictureObject>(
      engine::decode({reinterpret_cast<const std::uint8_t*>(file.data()), file.size()}).bitmap);
}

}  // namespace

std::unique_ptr<Site> makeEditorSite(Desktop& desktop, Window* parent, const std::string& name, bool userMode,
                                     const Surroundings& surroundings) {
  auto site = std::make_unique<Site>(desktop, parent, name, userMode);
  addView(*site, "igxImage", surroundings);
  site->add(makeEditorSuite(*site, surroundings));
  return site;
}

std::unique_ptr<Moorage> makeEditorSuite(Site& site, const Surroundings& surroundings) {
  return std::make_unique<Moorage>(site.desktop(), &site, "mrgUI", surroundings.user,
                                   docking::readLayout(resources::dialogLayout()));
}

std::unique_ptr<Moorage> makeBrowserSuite(Site& site, const Surroundings& surroundings) {
  return std::make_unique<Moorage>(site.desktop(), &site, "mrgUI", surroundings.user,
                                   docking::readLayout(resources::browserLayout()));
}

std::unique_ptr<Site> makePreviewSite(Desktop& desktop, Window* parent, const std::string& name,
                                      const Surroundings& surroundings) {
  auto site = std::make_unique<Site>(desktop, parent, name, true);
  site->Move(0, 0, kPreviewDesignSize.Width, kPreviewDesignSize.Height);
  for (const char* pane : {"igxOriginal", "igxPreview"}) {
    addView(*site, pane, surroundings);
    // Nobody can undo in a pane, and each step would keep a whole picture.
    Bind<ImageView>(*site, pane).UndoLevels(0);
  }
  auto stock = std::make_unique<PictureBox>(desktop, site.get(), "imgPreview", -1);
  stock->visible(false);
  stock->Picture(stockPicture());
  site->add(std::move(stock));
  return site;
}

std::unique_ptr<Site> makeFolderTreeSite(Desktop& desktop, Window* parent, const std::string& name,
                                         bool userMode) {
  auto site = std::make_unique<Site>(desktop, parent, name, userMode);
  site->Move(0, 0, kSplitPosition, kPreviewDesignSize.Height);
  auto tree = std::make_unique<TreeView>(desktop, site.get(), "tvwFolders", -1);
  for (const char* key : folder_tree_images::kAll) tree->ImageList().Set(key, 0);
  site->add(std::move(tree));
  site->add(std::make_unique<PictureBox>(desktop, site.get(), "picIcon", -1));
  site->add(std::make_unique<FolderNotices>(desktop, site.get(), "fnoFolders", -1));
  return site;
}

std::unique_ptr<Site> makeBrowserSite(Desktop& desktop, Window* parent, const std::string& name,
                                      bool userMode, const Surroundings& surroundings) {
  auto site = std::make_unique<Site>(desktop, parent, name, userMode);
  site->add(makeBrowserSuite(*site, surroundings));
  site->add(std::make_unique<SplitPanel>(desktop, site.get(), "pnlBrowse", -1));
  site->add(makeFolderTreeSite(desktop, site.get(), "ftvBrowse", userMode));
  site->add(std::make_unique<ThumbnailView>(desktop, site.get(), "thvBrowse", surroundings.files,
                                            surroundings.user));
  return site;
}

}  // namespace kestrel::headless
