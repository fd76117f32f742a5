#include "Registry.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "Classes.h"
#include "base/RuntimeError.h"

namespace kestrel::dispatch {
namespace {

template <typename Row>
std::vector<const Row*> Sorted(std::vector<const Row*> rows) {
  std::sort(rows.begin(), rows.end(),
            [](const Row* left, const Row* right) { return CompareNames(left->name, right->name) < 0; });
  return rows;
}

}  // namespace

std::span<const ClassDescription* const> Classes() {
  static const auto kAll = Sorted<ClassDescription>({
      &Describe<Alpha>(),          &Describe<BarEntries>(),
      &Describe<BarEntry>(),       &Describe<CancelValue>(),
      &Describe<Colors>(),         &Describe<Colour>(),
      &Describe<Combo>(),          &Describe<Command>(),
      &Describe<CommandBar>(),     &Describe<CommandBars>(),
      &Describe<CommandItem>(),    &Describe<CommandItems>(),
      &Describe<Commands>(),       &Describe<DeviceContext>(),
      &Describe<DockFunctions>(),  &Describe<DockWindow>(),
      &Describe<DockWindows>(),    &Describe<Document>(),
      &Describe<Draw>(),           &Describe<Effects>(),
      &Describe<FolderTreeView>(), &Describe<Form>(),
      &Describe<HotKey>(),         &Describe<HotKeyOptions>(),
      &Describe<HotKeys>(),        &Describe<IImageBrowserCtl>(),
      &Describe<IImageEvents>(),   &Describe<IImageProcessingCtl>(),
      &Describe<Image>(),          &Describe<ImageBrowser>(),
      &Describe<ImageList>(),      &Describe<ImageProcessing>(),
      &Describe<ImageView>(),      &Describe<ImgX>(),
      &Describe<ImgXDialog>(),     &Describe<Moorage>(),
      &Describe<Options>(),        &Describe<Palette>(),
      &Describe<Picture>(),        &Describe<Point>(),
      &Describe<Rectangle>(),      &Describe<Size>(),
      &Describe<StatusPanel>(),    &Describe<Surface>(),
      &Describe<Thumbnail>(),      &Describe<ThumbnailView>(),
      &Describe<Thumbnails>(),     &Describe<TreeNode>(),
      &Describe<TreeNodes>(),      &Describe<TreeView>(),
      &Describe<UndoPoint>(),      &Describe<Writer>(),
      &Describe<frmMaterials>(),   &Describe<frmZoom>(),
  });
  return kAll;
}

std::span<const EnumerationDescription* const> Enumerations() {
  static const auto kAll = Sorted<EnumerationDescription>({
      &DescribeEnumeration<ImageProcessingDefaultConstants>(),
      &DescribeEnumeration<ImageProcessingDirectionConstants>(),
      &DescribeEnumeration<ImageProcessingToolConstants>(),
      &DescribeEnumeration<ThumbnailSizeTypeEnum>(),
  });
  return kAll;
}

const ClassDescription* FindClass(std::string_view name) {
  const auto all = Classes();
  const auto found = std::lower_bound(all.begin(), all.end(), name,
                                      [](const ClassDescription* row, std::string_view wanted) {
                                        return CompareNames(row->name, wanted) < 0;
                                      });
  return found != all.end() && CompareNames((*found)->name, name) == 0 ? *found : nullptr;
}

std::shared_ptr<const Reference> Create(std::string_view name) {
  const ClassDescription* found = FindClass(name);
  if (!found || !found->create) {
    throw RuntimeError(err::kCannotCreateObject,
                       "There is no class \"" + std::string(name) + "\" that can create objects.");
  }
  return found->create();
}

}  // namespace kestrel::dispatch
