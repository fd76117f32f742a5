#include <memory>
#include <tuple>

#include "host/dispatch/Fields.h"
#include "host/dispatch/Table.h"
#include "imaging/contract/Colors.h"
#include "imaging/contract/Colour.h"
#include "imaging/contract/Palette.h"
#include "imaging/contract/Types.h"

namespace kestrel::dispatch {
namespace {

template <typename Class>
Reference::Pointer CreateNew() {
  return Refer(std::make_shared<Class>());
}

// -- Colors -----------------------------------------------------------------------------------------------

constexpr std::tuple kColorsMembers{
    Method(
        "Create", 1, &Colors::Create, {ColorArgument("Colour"), {"Alpha", 255}},
        "Makes a color object. Alpha is 0 (transparent) to 255 (opaque); the color -1 makes \"no color\"."),
};
constexpr ClassDescription kColors =
    MakeClass<Colors, kColorsMembers>({.name = "Colors", .help = "Makes color objects."});

constexpr std::tuple kColourMembers{
    ReadOnly("Red", 1, &Colour::Red, "The red component, 0 to 255."),
    ReadOnly("Green", 2, &Colour::Green, "The green component, 0 to 255."),
    ReadOnly("Blue", 3, &Colour::Blue, "The blue component, 0 to 255."),
    Color(Property("Value", 4, &Colour::Value, &Colour::Value,
                   "The color number without the alpha; -1 is \"no color\".")),
    ReadOnly("Alpha", 5, &Colour::Alpha, "The alpha, 0 (transparent) to 255 (opaque)."),
    ReadOnly("IsNone", 6, &Colour::IsNone, "Whether it is \"no color\"; its components are then 0."),
};
constexpr ClassDescription kColour =
    MakeClass<Colour, kColourMembers>({.name = "Colour", .help = "A color with its alpha."});

constexpr std::tuple kPaletteMembers{
    Property("Type", 1, &Palette::Type, &Palette::Type, "The colors of the palette: 0 gray scale."),
};
constexpr ClassDescription kPalette = MakeClass<Palette, kPaletteMembers>(
    {.name = "Palette", .help = "A palette to convert a picture to.", .create = &CreateNew<Palette>});

// -- Places -----------------------------------------------------------------------------------------------

constexpr std::tuple kPointMembers{
    Property("X", 1, &FieldOf<&Point::X>, &SetField<&Point::X>, "The horizontal position in pixels."),
    Property("Y", 2, &FieldOf<&Point::Y>, &SetField<&Point::Y>, "The vertical position in pixels."),
};
constexpr ClassDescription kPoint = MakeClass<Point, kPointMembers>(
    {.name = "Point", .help = "A position in pixels.", .create = &CreateNew<Point>});

constexpr std::tuple kSizeMembers{
    ReadOnly("Width", 1, &FieldOf<&Size::Width>, "The width in pixels."),
    ReadOnly("Height", 2, &FieldOf<&Size::Height>, "The height in pixels."),
};
constexpr ClassDescription kSize =
    MakeClass<Size, kSizeMembers>({.name = "Size", .help = "A width and a height in pixels."});

Point LocationOf(Rectangle& rectangle) { return {rectangle.Left, rectangle.Top}; }
Size SizeOf(Rectangle& rectangle) { return {rectangle.Width, rectangle.Height}; }

constexpr std::tuple kRectangleMembers{
    ReadOnly("Location", 1, &LocationOf, "The top left corner."),
    ReadOnly("Size", 2, &SizeOf, "Width and height."),
    ReadOnly("Left", 3, &FieldOf<&Rectangle::Left>, "The left edge in pixels."),
    ReadOnly("Top", 4, &FieldOf<&Rectangle::Top>, "The top edge in pixels."),
    ReadOnly("Width", 5, &FieldOf<&Rectangle::Width>, "The width in pixels."),
    ReadOnly("Height", 6, &FieldOf<&Rectangle::Height>, "The height in pixels."),
};
constexpr ClassDescription kRectangle =
    MakeClass<Rectangle, kRectangleMembers>({.name = "Rectangle", .help = "A rectangle in pixels."});

// -- Answers of event handlers ----------------------------------------------------------------------------

constexpr std::tuple kCancelValueMembers{
    Property("Value", 1, &FieldOf<&CancelValue::Value>, &SetField<&CancelValue::Value>,
             "True cancels the default action of the event."),
};
constexpr ClassDescription kCancelValue = MakeClass<CancelValue, kCancelValueMembers>(
    {.name = "CancelValue", .help = "The argument by which a handler cancels the default action."});

}  // namespace

template <>
const ClassDescription& Describe<Colors>() {
  return kColors;
}
template <>
const ClassDescription& Describe<Colour>() {
  return kColour;
}
template <>
const ClassDescription& Describe<Palette>() {
  return kPalette;
}
template <>
const ClassDescription& Describe<Point>() {
  return kPoint;
}
template <>
const ClassDescription& Describe<Size>() {
  return kSize;
}
template <>
const ClassDescription& Describe<Rectangle>() {
  return kRectangle;
}
template <>
const ClassDescription& Describe<CancelValue>() {
  return kCancelValue;
}

}  // namespace kestrel::dispatch
