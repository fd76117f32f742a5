#pragma once

#include <cstdint>
#include <string>

#include "Description.h"
#include "editor/interface/Constants.h"
#include "settings/OptionTypes.h"

namespace kestrel {
class Alpha;
class BarEntries;
class BarEntry;
class Colors;
class Colour;
class Combo;
class Command;
class CommandBar;
class CommandBars;
class CommandItems;
class Commands;
class DeviceContext;
class DockFunctions;
class DockWindow;
class DockWindows;
class Document;
class Draw;
class Effects;
class FolderTreeView;
class Form;
class HotKey;
class HotKeyOptions;
class HotKeys;
class IImageBrowserCtl;
class IImageEvents;
class IImageProcessingCtl;
class Image;
class ImageBrowser;
class ImageList;
class ImageProcessing;
class ImageView;
class ImgX;
class ImgXDialog;
class Moorage;
class Options;
class Palette;
class Picture;
class StatusPanel;
class Surface;
class Thumbnail;
class ThumbnailView;
class Thumbnails;
class TreeNode;
class TreeNodes;
class TreeView;
class UndoPoint;
class Writer;
class frmMaterials;
class frmZoom;
struct CancelValue;
struct CommandItem;
struct Point;
struct Rectangle;
struct Size;
}  // namespace kestrel

/// Each C++ type of the public interface with its description, and how long its objects live.
namespace kestrel::dispatch {

/// How long an object lives that a member or an event hands out by reference or plain pointer.
enum class Life : std::uint8_t {
  kWithParent,   ///< as long as the object that handed it out
  kLocated,      ///< it can vanish before: `Locate` finds it again on each use
  kCopied,       ///< a value: the host gets a copy, which an event copies back if it is in-out
  kDuringEvent,  ///< until the event's handlers have returned
};

template <typename Class>
inline constexpr Life kLife = Life::kWithParent;

/// For `Life::kLocated`: `static std::string Key(Class&)`, which identifies the object in the one that hands
/// it out, and for each class that does so `static Class* Find(Parent&, const std::string& key)`, which
/// returns null if it is gone. An object handed out by one of the same class is found in the latter's parent.
template <typename Class>
struct Locate;

/// The description of a class, and of an enumeration. Each is specialized here and defined with its table.
template <typename Class>
const ClassDescription& Describe();
template <typename Enumeration>
const EnumerationDescription& DescribeEnumeration();

template <>
const ClassDescription& Describe<Alpha>();
template <>
const ClassDescription& Describe<BarEntries>();
template <>
const ClassDescription& Describe<BarEntry>();
template <>
const ClassDescription& Describe<CancelValue>();
template <>
const ClassDescription& Describe<Colors>();
template <>
const ClassDescription& Describe<Colour>();
template <>
const ClassDescription& Describe<Combo>();
template <>
const ClassDescription& Describe<Command>();
template <>
const ClassDescription& Describe<CommandBar>();
template <>
const ClassDescription& Describe<CommandBars>();
template <>
const ClassDescription& Describe<CommandItem>();
template <>
const ClassDescription& Describe<CommandItems>();
template <>
const ClassDescription& Describe<Commands>();
template <>
const ClassDescription& Describe<DeviceContext>();
template <>
const ClassDescription& Describe<DockFunctions>();
template <>
const ClassDescription& Describe<DockWindow>();
template <>
const ClassDescription& Describe<DockWindows>();
template <>
const ClassDescription& Describe<Document>();
template <>
const ClassDescription& Describe<Draw>();
template <>
const ClassDescription& Describe<Effects>();
template <>
const ClassDescription& Describe<FolderTreeView>();
template <>
const ClassDescription& Describe<Form>();
template <>
const ClassDescription& Describe<HotKey>();
template <>
const ClassDescription& Describe<HotKeyOptions>();
template <>
const ClassDescription& Describe<HotKeys>();
template <>
const ClassDescription& Describe<IImageBrowserCtl>();
template <>
const ClassDescription& Describe<IImageEvents>();
template <>
const ClassDescription& Describe<IImageProcessingCtl>();
template <>
const ClassDescription& Describe<Image>();
template <>
const ClassDescription& Describe<ImageBrowser>();
template <>
const ClassDescription& Describe<ImageList>();
template <>
const ClassDescription& Describe<ImageProcessing>();
template <>
const ClassDescription& Describe<ImageView>();
template <>
const ClassDescription& Describe<ImgX>();
template <>
const ClassDescription& Describe<ImgXDialog>();
template <>
const ClassDescription& Describe<Moorage>();
template <>
const ClassDescription& Describe<Options>();
template <>
const ClassDescription& Describe<Palette>();
template <>
const ClassDescription& Describe<Picture>();
template <>
const ClassDescription& Describe<Point>();
template <>
const ClassDescription& Describe<Rectangle>();
template <>
const ClassDescription& Describe<Size>();
template <>
const ClassDescription& Describe<StatusPanel>();
template <>
const ClassDescription& Describe<Surface>();
template <>
const ClassDescription& Describe<Thumbnail>();
template <>
const ClassDescription& Describe<ThumbnailView>();
template <>
const ClassDescription& Describe<Thumbnails>();
template <>
const ClassDescription& Describe<TreeNode>();
template <>
const ClassDescription& Describe<TreeNodes>();
template <>
const ClassDescription& Describe<TreeView>();
template <>
const ClassDescription& Describe<UndoPoint>();
template <>
const ClassDescription& Describe<Writer>();
template <>
const ClassDescription& Describe<frmMaterials>();
template <>
const ClassDescription& Describe<frmZoom>();

template <>
const EnumerationDescription& DescribeEnumeration<ImageProcessingToolConstants>();
template <>
const EnumerationDescription& DescribeEnumeration<ImageProcessingDefaultConstants>();
template <>
const EnumerationDescription& DescribeEnumeration<ImageProcessingDirectionConstants>();
template <>
const EnumerationDescription& DescribeEnumeration<ThumbnailSizeTypeEnum>();

// -- Objects that can vanish before the one that handed them out ------------------------------------------

/// The picture of a view or an ImgX object is replaced by a load.
template <>
inline constexpr Life kLife<Image> = Life::kLocated;
template <>
struct Locate<Image> {
  static std::string Key(const Image& /*image*/) { return {}; }
  template <typename Parent>
  static Image* Find(Parent& parent, const std::string& /*key*/) {
    return parent.Image();
  }
};

/// The editor makes its file dialog and its tool windows in `Initialize` and ends the windows in `Terminate`.
template <>
inline constexpr Life kLife<ImgXDialog> = Life::kLocated;
template <>
struct Locate<ImgXDialog> {
  static std::string Key(const ImgXDialog& /*dialog*/) { return {}; }
  static ImgXDialog* Find(IImageProcessingCtl& editor, const std::string& key);
};
template <>
inline constexpr Life kLife<frmZoom> = Life::kLocated;
template <>
struct Locate<frmZoom> {
  static std::string Key(const frmZoom& /*window*/) { return {}; }
  static frmZoom* Find(IImageProcessingCtl& editor, const std::string& key);
};
template <>
inline constexpr Life kLife<frmMaterials> = Life::kLocated;
template <>
struct Locate<frmMaterials> {
  static std::string Key(const frmMaterials& /*window*/) { return {}; }
  static frmMaterials* Find(IImageProcessingCtl& editor, const std::string& key);
};

/// The window ends with the tool window that hands it out.
template <>
inline constexpr Life kLife<Form> = Life::kLocated;
template <>
struct Locate<Form> {
  static std::string Key(const Form& /*window*/) { return {}; }
  template <typename ToolWindow>
  static Form* Find(ToolWindow& window, const std::string& /*key*/) {
    return &window.Form();
  }
};

/// A thumbnail is known by its file, as long as the view shows that: also one that a selection handed out.
template <>
inline constexpr Life kLife<Thumbnail> = Life::kLocated;
template <>
struct Locate<Thumbnail> {
  static std::string Key(const Thumbnail& thumbnail);
  static Thumbnail* Find(Thumbnails& thumbnails, const std::string& key);
  static Thumbnail* Find(ThumbnailView& view, const std::string& key);
};

/// A node is known by its key. `TreeNodes::Clear`, or a rebuild of the tree, removes it.
template <>
inline constexpr Life kLife<TreeNode> = Life::kLocated;
template <>
struct Locate<TreeNode> {
  static std::string Key(const TreeNode& node);
  static TreeNode* Find(TreeNodes& nodes, const std::string& key);
  static TreeNode* Find(TreeView& tree, const std::string& key);
  static TreeNode* Find(FolderTreeView& tree, const std::string& key);
};

/// `HotKey::Remove` removes it from its command.
template <>
inline constexpr Life kLife<HotKey> = Life::kLocated;
template <>
struct Locate<HotKey> {
  static std::string Key(const HotKey& hotKey);
  static HotKey* Find(HotKeys& keys, const std::string& key);
  static HotKey* Find(Moorage& suite, const std::string& key);
};

/// The color of `Draw` is another object once a bound ImgX object has a picture of its own. All other colors
/// are values.
template <>
inline constexpr Life kLife<Colour> = Life::kLocated;
template <>
struct Locate<Colour> {
  static std::string Key(const Colour& /*color*/) { return {}; }
  static Colour* Find(Draw& draw, const std::string& key);
};

// -- Objects of an event, and values ----------------------------------------------------------------------

template <>
inline constexpr Life kLife<CancelValue> = Life::kCopied;
/// A line has no life of its own: its list may be cleared.
template <>
inline constexpr Life kLife<CommandItem> = Life::kCopied;
template <>
inline constexpr Life kLife<Combo> = Life::kDuringEvent;
template <>
inline constexpr Life kLife<DeviceContext> = Life::kDuringEvent;

}  // namespace kestrel::dispatch
