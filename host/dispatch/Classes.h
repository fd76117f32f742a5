#pragma once

#include <cstdint>
#include <string>

#include "Description.h"
#include "editor/interface/Constants.h"
#include "settings/OptionTypes.h"

namespace kestrel {
class Command;
class CommandBar;
class CommandBars;
class Commands;
class DockWindow;
class DockWindows;
class FolderTreeView;
class IImageBrowserCtl;
class IImageEvents;
class IImageProcessingCtl;
class Image;
class ImageBrowser;
class ImageProcessing;
class ImageView;
class ImgX;
class ImgXDialog;
class Moorage;
class Options;
class Picture;
class Thumbnail;
class ThumbnailView;
class Thumbnails;
class frmMaterials;
class frmZoom;
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
const ClassDescription& Describe<Command>();
template <>
const ClassDescription& Describe<CommandBar>();
template <>
const ClassDescription& Describe<CommandBars>();
template <>
const ClassDescription& Describe<Commands>();
template <>
const ClassDescription& Describe<DockWindow>();
template <>
const ClassDescription& Describe<DockWindows>();
template <>
const ClassDescription& Describe<FolderTreeView>();
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
const ClassDescription& Describe<Picture>();
template <>
const ClassDescription& Describe<Thumbnail>();
template <>
const ClassDescription& Describe<ThumbnailView>();
template <>
const ClassDescription& Describe<Thumbnails>();
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

/// A thumbnail is known by its file.
template <>
inline constexpr Life kLife<Thumbnail> = Life::kLocated;
template <>
struct Locate<Thumbnail> {
  static std::string Key(const Thumbnail& thumbnail);
  static Thumbnail* Find(Thumbnails& thumbnails, const std::string& key);
  static Thumbnail* Find(ThumbnailView& view, const std::string& key);
};

}  // namespace kestrel::dispatch
