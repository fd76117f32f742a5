#include <array>

#include "host/dispatch/Classes.h"

namespace kestrel::dispatch {
namespace {

constexpr std::array<EnumerationValue, 9> kTools{{
    {"ipToolNone", ipToolNone},
    {"ipToolSelect", ipToolSelect},
    {"ipToolPan", ipToolPan},
    {"ipToolZoom", ipToolZoom},
    {"ipToolLine", ipToolLine},
    {"ipToolRectangle", ipToolRectangle},
    {"ipToolEllipse", ipToolEllipse},
    {"ipToolFreehand", ipToolFreehand},
    {"ipToolDropper", ipToolDropper},
}};
constexpr EnumerationDescription kToolConstants{"ImageProcessingToolConstants", "The editor's tools.",
                                                kTools};

constexpr std::array<EnumerationValue, 1> kDefaults{{{"ipUseDefault", ipUseDefault}}};
constexpr EnumerationDescription kDefaultConstants{
    "ImageProcessingDefaultConstants", "As an optional argument: use the value of the option.", kDefaults};

constexpr std::array<EnumerationValue, 2> kDirections{{
    {"ipDirectionLeft", ipDirectionLeft},
    {"ipDirectionRight", ipDirectionRight},
}};
constexpr EnumerationDescription kDirectionConstants{"ImageProcessingDirectionConstants",
                                                     "The direction of a rotation.", kDirections};

constexpr std::array<EnumerationValue, 2> kSizeTypes{{
    {"tstPercentage", tstPercentage},
    {"tstWidthInPixels", tstWidthInPixels},
}};
constexpr EnumerationDescription kSizeTypeEnum{"ThumbnailSizeTypeEnum", "The unit of a thumbnail's size.",
                                               kSizeTypes};

}  // namespace

template <>
const EnumerationDescription& DescribeEnumeration<ImageProcessingToolConstants>() {
  return kToolConstants;
}
template <>
const EnumerationDescription& DescribeEnumeration<ImageProcessingDefaultConstants>() {
  return kDefaultConstants;
}
template <>
const EnumerationDescription& DescribeEnumeration<ImageProcessingDirectionConstants>() {
  return kDirectionConstants;
}
template <>
const EnumerationDescription& DescribeEnumeration<ThumbnailSizeTypeEnum>() {
  return kSizeTypeEnum;
}

}  // namespace kestrel::dispatch
