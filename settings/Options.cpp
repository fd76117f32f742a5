#include "Options.h"

#include <exception>

#include "StoreTogether.h"
#include "StoredQuality.h"
#include "base/RuntimeError.h"
#include "diagnostics/Trailer.h"
#include "imaging/contract/Formats.h"
#include "imaging/contract/RegistryStore.h"
#include "modProcessing.h"

namespace kestrel {
namespace {

Variant Stored(bool value) { return Variant(value); }
Variant Stored(std::int32_t value) { return Variant(value); }

void Take(const Variant& stored, bool& value) { value = stored.ToBoolean(); }
template <typename Number>
void Take(const Variant& stored, Number& value) {
  value = static_cast<Number>(stored.ToInt32());
}

}  // namespace

// One row per property: type, name, section, value name, kind and default. Each row expands to its own pair
// of procedures, so the line in a report identifies the property.
#define OPTION(Type, Name, Section, ValueName, Kind, Default)                                                \
  Type Options::Name() const {                                                                               \
    Type Result{};                                                                                           \
    try {                                                                                                    \
      Take(modProcessing::RegistryStore().GetSetting(ValueName, Stored(Default), Kind, Section,              \
                                                     HKEY_CURRENT_USER),                                     \
           Result);                                                                                          \
    } catch (...) {                                                                                          \
      QDK_TRAILER(Name, QDK_PARAMETERS(), QDK_LOCALS(Result));                                               \
    }                                                                                                        \
    return Result;                                                                                           \
  }                                                                                                          \
  void Options::Name(Type Value) {                                                                           \
    try {                                                                                                    \
      modProcessing::RegistryStore().SetSetting(ValueName, Stored(Value), Kind, Section, HKEY_CURRENT_USER); \
    } catch (...) {                                                                                          \
      QDK_TRAILER(Name, QDK_PARAMETERS(Value), QDK_LOCALS());                                                \
    }                                                                                                        \
  }

// clang-format off
OPTION(std::int32_t,                      JPEGQuality,                 "JPEG",         "Quality",               kStoreNumber, kDefaultJpegQuality)
OPTION(OLE_COLOR,                         MaterialBackColor,           "Materials",    "BackColor",             kStoreString, -1)
OPTION(OLE_COLOR,                         MaterialForeColor,           "Materials",    "ForeColor",             kStoreNumber, 0x0000FF)
OPTION(std::int32_t,                      ThumbnailSize,               "Thumbnails",   "SizeEx",                kStoreNumber, 30)
OPTION(OLE_COLOR,                         ThumbnailBackgroundColor,    "Thumbnails",   "BackgroundColor",       kStoreNumber, 0xFFFFFF)
OPTION(bool,                              ThumbnailAutomaticUpdate,    "Thumbnails",   "AutomaticUpdate",       kStoreNumber, false)
OPTION(bool,                              ThumbnailAddDropShadow,      "Thumbnails",   "AddDropShadow",         kStoreNumber, true)
OPTION(bool,                              ThumbnailAutoCheck,          "Thumbnails",   "AutoCheck",             kStoreNumber, true)
OPTION(std::int32_t,                      ZoomLevel,                   "Settings",     "Zoom",                  kStoreNumber, 10)
OPTION(std::int32_t,                      UndoLevels,                  "Settings",     "UndoLevels",            kStoreNumber, 10)
OPTION(bool,                              ResizeCanvasLockAspectRatio, "ResizeCanvas", "LockAspectRatio",       kStoreNumber, true)
OPTION(std::int32_t,                      ResizeCanvasWidth,           "ResizeCanvas", "Width",                 kStoreNumber, 0)
OPTION(std::int32_t,                      ResizeCanvasPlacement,       "ResizeCanvas", "Placement",             kStoreNumber, 4)
OPTION(std::int32_t,                      ResizeCanvasHeight,          "ResizeCanvas", "Height",                kStoreNumber, 0)
OPTION(OLE_COLOR,                         ResizeCanvasColor,           "ResizeCanvas", "ResizeCanvasColor",     kStoreNumber, 0xFFFFFF)
OPTION(OLE_COLOR,                         FlattenAlphaColor,           "Channels",     "FlattenAlphaColor",     kStoreNumber, 0xFFFFFF)
OPTION(OLE_COLOR,                         PasteSpecialMaskColor,       "Edit",         "PasteSpecialMaskColor", kStoreNumber, 0xFF00FF)
OPTION(bool,                              ResizeLockAspectRatio,       "Resize",       "LockAspectRatio",       kStoreNumber, true)
OPTION(std::int32_t,                      ResizeWidth,                 "Resize",       "Width",                 kStoreNumber, 0)
OPTION(std::int32_t,                      ResizeHeight,                "Resize",       "Height",                kStoreNumber, 0)
OPTION(std::int32_t,                      ResizeScale,                 "Resize",       "Scale",                 kStoreNumber, 0)
OPTION(std::int32_t,                      ResizeMode,                  "Resize",       "Mode",                  kStoreNumber, 2)
OPTION(OLE_COLOR,                         DropShadowColor,             "DropShadow",   "Color",                 kStoreNumber, 0x000000)
OPTION(bool,                              DropShadowAutomaticMask,     "DropShadow",   "AutomaticMask",         kStoreNumber, true)
OPTION(OLE_COLOR,                         DropShadowMaskColor,         "DropShadow",   "MaskColor",             kStoreNumber, 0x000000)
OPTION(std::int32_t,                      DropShadowHorizontalOffset,  "DropShadow",   "HorizontalOffset",      kStoreNumber, 5)
OPTION(std::int32_t,                      DropShadowVerticalOffset,    "DropShadow",   "VerticalOffset",        kStoreNumber, 5)
OPTION(std::int32_t,                      DropShadowBlur,              "DropShadow",   "Blur",                  kStoreNumber, 128)
OPTION(std::int32_t,                      DropShadowOpacity,           "DropShadow",   "Opacity",               kStoreNumber, 75)
OPTION(std::int32_t,                      RotateAngle,                 "Rotate",       "Angle",                 kStoreNumber, 90)
OPTION(ImageProcessingDirectionConstants, RotateDirection,             "Rotate",       "Direction",             kStoreNumber, ipDirectionRight)
OPTION(OLE_COLOR,                         BackgroundGridColor1,        "Background",   "Color1",                kStoreNumber, 0xFFFFFF)
OPTION(OLE_COLOR,                         BackgroundGridColor2,        "Background",   "Color2",                kStoreNumber, 0xC0C0C0)
OPTION(std::int32_t,                      BackgroundGridSize,          "Background",   "Size",                  kStoreNumber, 20)
OPTION(ThumbnailSizeTypeEnum,             ThumbnailSizeType,           "Thumbnails",   "SizeType",              kStoreNumber, tstPercentage)
// clang-format on

#undef OPTION

void StoreTogether(const std::function<void()>& Lets) {
  std::exception_ptr raised;
  try {
    StoreBatch batch(modProcessing::RegistryStore());
    try {
      Lets();
    } catch (...) {
      raised = std::current_exception();
    }
    batch.Commit();
  } catch (...) {
    QDK_TRAILER(StoreTogether, QDK_PARAMETERS(), QDK_LOCALS());
  }
  if (raised) std::rethrow_exception(raised);
}

std::int32_t StoredJPEGQuality() {
  kestrel::RegistryStore& store = modProcessing::RegistryStore();
  const Variant stored = store.ReadValue(HKEY_CURRENT_USER, store.RootKey() + "\\JPEG", "Quality");
  if (store.ReadFailed()) throw RuntimeError(err::kDeviceIO, "The stored JPEG quality could not be read.");
  if (stored.TypeCode() == static_cast<std::int32_t>(Variant::Type::kEmpty)) return kDefaultJpegQuality;
  if (stored.TypeCode() != static_cast<std::int32_t>(Variant::Type::kInt32)) {
    throw RuntimeError(err::kTypeMismatch, "The stored JPEG quality is not a number.");
  }
  return stored.ToInt32();
}

}  // namespace kestrel
