#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/DescribedError.h"
#include "base/Numbers.h"
#include "base/RuntimeError.h"
#include "modTollgarthSupport.h"

namespace kestrel::modTollgarthSupport {
namespace {

const std::string kLineEnd = "\r\n";
constexpr std::int32_t kIndentStep = 2;
constexpr std::int32_t kElementDepth = 3;
constexpr std::int32_t kCountedDimensions = 4;

std::string Blanks(std::int32_t count) { return std::string(static_cast<std::size_t>(count), ' '); }

/// The name without the attribute that it may carry.
std::string TagName(const std::string& name) { return name.substr(0, name.find(' ')); }

std::string Opening(const std::string& name, std::int32_t indent) {
  return Blanks(indent) + "<" + name + ">";
}
std::string Closing(const std::string& name) { return "</" + TagName(name) + ">" + kLineEnd; }

/// Appends the elements of an object; false if it cannot be enumerated. A failure to begin counts as not
/// enumerable; a later failure propagates to the caller.
bool FormatElements(const Object& object, const std::string& name, std::int32_t indent, std::string& text) {
  std::int32_t count = 0;
  try {
    return object.Enumerate([&](const Variant& element) {
      ++count;
      text +=
          qdkFormatVariable(name + "[" + ToText(count) + "]", element, kElementDepth, indent + kIndentStep);
    });
  } catch (...) {
    if (count > 0) throw;
    return false;
  }
}

std::string FormatObject(const std::string& name, const Object& object, std::int32_t indent) {
  std::string elements;
  if (FormatElements(object, name, indent, elements)) return kLineEnd + elements + Blanks(indent);
  return "{" + object.TypeName() + "}";
}

std::string FormatScalar(const Variant& value) {
  std::string text = value.ToString();
  for (std::size_t i = text.find('\0'); i != text.npos; i = text.find('\0', i)) text.replace(i, 1, "{Null}");
  return text;
}

/// The text between the tags of a value without elements; none for arrays and objects.
std::optional<std::string> FormatPlain(const Variant& value) {
  switch (static_cast<Variant::Type>(value.TypeCode())) {
    case Variant::Type::kEmpty:
      return "{Empty}";
    case Variant::Type::kNull:
      return "{Null}";
    case Variant::Type::kError:
      return "";
    case Variant::Type::kDataObject:
      return value.AsDataObject().object == nullptr ? "{Nothing}" : "{DataObject}";
    case Variant::Type::kRecord:
      return "{UDT - " + value.AsRecord().typeName + "}";
    case Variant::Type::kObject:
      if (value.AsObject() == nullptr) return "{Nothing}";
      return std::nullopt;
    default:
      if (value.IsArray()) return std::nullopt;
      return FormatScalar(value);
  }
}

/// The number of dimensions, 1 to 3. Returns 0 for more than 3: the loop that looks for the first missing
/// dimension ends without finding it.
std::int32_t CountDimensions(const VariantArray& array) {
  for (std::int32_t i = 1; i <= kCountedDimensions; ++i) {
    try {
      array.Lower(i);
    } catch (...) {
      return i - 1;
    }
  }
  return 0;
}

class ArrayFormatter {
 public:
  ArrayFormatter(const std::string& name, const VariantArray& array, std::int32_t depth, std::int32_t indent)
      : name_(name), array_(array), depth_(depth), indent_(indent), dimensions_(CountDimensions(array)) {}

  std::string Format() {
    if (dimensions_ > 3) text_ += "{Dump truncated at " + ToText(dimensions_) + " dimensions}";
    if (qdkDimensionMissing(array_, 1)) {
      text_ += "{UnInitialised Array}";
    } else {
      FormatDimension({});
    }
    return text_;
  }

 private:
  /// Renders the elements below the given indices, one dimension further in.
  void FormatDimension(std::vector<std::int32_t> indices) {
    const auto dimension = static_cast<std::int32_t>(indices.size()) + 1;
    if (qdkDimensionMissing(array_, dimension)) {
      text_ += "{UnInitialised Array Dimension " + ToText(dimension) + "}";
      return;
    }
    indices.push_back(0);
    for (std::int32_t i = array_.Lower(dimension); i <= array_.Upper(dimension); ++i) {
      indices.back() = i;
      if (dimension == dimensions_ || dimension == 3) {
        FormatElement(indices);
      } else {
        FormatDimension(indices);
      }
    }
  }

  void FormatElement(const std::vector<std::int32_t>& indices) {
    std::string list;
    for (const std::int32_t index : indices) list += (list.empty() ? "" : ",") + ToText(index);
    text_ += qdkFormatVariable(name_ + " Index=\"" + list + "\"", array_.At(indices), depth_ - 1,
                               indent_ + kIndentStep);
  }

  const std::string& name_;
  const VariantArray& array_;
  std::int32_t depth_;
  std::int32_t indent_;
  std::int32_t dimensions_;
  std::string text_;
};

}  // namespace

bool qdkDimensionMissing(const VariantArray& Value, std::int32_t Dimension) {
  try {
    Value.Lower(Dimension);
    return false;
  } catch (const RuntimeError& error) {
    if (error.Number() != err::kSubscript) throw;
    return true;
  }
}

std::string qdkFormatVariable(const std::string& Name, const Variant& Value, std::int32_t Depth,
                              std::int32_t Indent) {
  std::string opening;
  try {
    opening = Opening(Name, Indent);
    if (const auto text = FormatPlain(Value)) return opening + *text + Closing(Name);
  } catch (...) {
    return "{Error " + ToText(DescribeCurrentError().Number) + " formatting for output}";
  }
  // Errors of the elements propagate to the caller.
  if (!Value.IsArray()) return opening + FormatObject(Name, *Value.AsObject(), Indent) + Closing(Name);
  return opening + kLineEnd + ArrayFormatter(Name, Value.AsArray(), Depth, Indent).Format() + Blanks(Indent) +
         Closing(Name);
}

}  // namespace kestrel::modTollgarthSupport
