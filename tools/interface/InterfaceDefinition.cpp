#include "InterfaceDefinition.h"

#include <cstddef>
#include <cstdint>
#include <span>

#include "Words.h"
#include "host/dispatch/Classes.h"
#include "host/dispatch/Registry.h"

namespace kestrel::tools {
namespace {

using namespace dispatch;

constexpr std::string_view kLibrary = "KestrelLib2";
/// DISPID_NEWENUM, by which hosts find the enumerator of a collection.
constexpr std::int32_t kNewEnum = -4;

/// Pictures are passed as the system's own picture objects.
bool isOfTheSystem(const ClassDescription& description) { return &description == &Describe<Picture>(); }

std::string interfaceOf(const ClassDescription& description) { return "_" + std::string(description.name); }
std::string eventsOf(const ClassDescription& description) { return "__" + std::string(description.name); }

std::string textOf(const Type& type) {
  switch (type.kind) {
    case Kind::kVoid:
      return "void";
    case Kind::kBoolean:
      return "VARIANT_BOOL";
    case Kind::kByte:
      return "unsigned char";
    case Kind::kInt16:
      return "short";
    case Kind::kInt32:
    case Kind::kWindow:  // window handles have 32 significant bits there
      return "long";
    case Kind::kFloat:
      return "float";
    case Kind::kDouble:
      return "double";
    case Kind::kString:
      return "BSTR";
    case Kind::kColor:
      return "OLE_COLOR";
    case Kind::kEnumeration:
      return std::string(type.enumeration().name);
    case Kind::kObject:
      return (isOfTheSystem(type.objectClass()) ? "IPictureDisp" : interfaceOf(type.objectClass())) + "*";
    case Kind::kVariant:
      return "VARIANT";
  }
  return {};
}

std::string textOf(const DefaultValue& value) {
  switch (value.kind) {
    case DefaultValue::Kind::kBoolean:
      return value.number != 0 ? "-1" : "0";
    case DefaultValue::Kind::kInt32:
    case DefaultValue::Kind::kDouble:
      return numberText(value.number);
    case DefaultValue::Kind::kString:
      return quoted(value.text);
    case DefaultValue::Kind::kNone:
    case DefaultValue::Kind::kNothing:
      break;
  }
  return "0";
}

std::string textOf(const Parameter& parameter) {
  std::string attributes = parameter.inOut ? "in, out" : "in";
  if (parameter.IsOptional()) {
    attributes += ", optional, defaultvalue(" + textOf(parameter.defaultValue) + ")";
  }
  return "[" + attributes + "] " + textOf(parameter.type) + (parameter.inOut ? "* " : " ") +
         std::string(parameter.name);
}

std::string textOf(std::span<const Parameter> parameters) {
  std::string text;
  for (const Parameter& parameter : parameters) append(text, ", ", textOf(parameter));
  return text;
}

class Library {
 public:
  Library(const Identifiers& identifiers, std::string_view version)
      : identifiers_(identifiers), version_(version) {}

  std::string Text() {
    text_ =
        "// The public interface, written by the build from the tables of host/dispatch.\n\n"
        "import \"oaidl.idl\";\n"
        "import \"ocidl.idl\";\n\n";
    Head({.name = kLibrary, .help = "The embeddable image editor and image browser."},
         "version(" + std::string(version_) + ")");
    text_ += "library " + std::string(kLibrary) + " {\n";
    text_ += "importlib(\"stdole2.tlb\");\n";
    for (const EnumerationDescription* description : Enumerations()) Add(*description);
    Declare();
    // The interfaces come before the dispatch interfaces, or else Wine's compiler writes a wrong last byte of
    // the library's identifier.
    ForEachClass([this](const ClassDescription& description) { AddInterface(description); });
    ForEachClass([this](const ClassDescription& description) { AddEvents(description); });
    ForEachClass([this](const ClassDescription& description) { AddClass(description); });
    text_ += "};\n";
    return std::move(text_);
  }

 private:
  struct Named {
    std::string_view name;
    std::string_view help;
  };

  template <typename Add>
  static void ForEachClass(Add add) {
    for (const ClassDescription* description : Classes()) {
      if (!isOfTheSystem(*description)) add(*description);
    }
  }

  /// The attributes of a type, before it.
  void Head(const Named& type, const std::string& more) {
    text_ += "[\n  uuid(" + identifiers_.Of(type.name) + "),\n";
    if (!more.empty()) text_ += "  " + more + ",\n";
    text_ += "  helpstring(" + quoted(type.help) + ")\n]\n";
  }

  void Add(const EnumerationDescription& description) {
    text_ += "\ntypedef ";
    Head({description.name, description.help}, "");
    text_ += "enum " + std::string(description.name) + " {\n";
    std::string values;
    for (const EnumerationValue& value : description.values) {
      append(values, ",\n", "  " + std::string(value.name) + " = " + std::to_string(value.value));
    }
    text_ += values + "\n} " + std::string(description.name) + ";\n";
  }

  void Declare() {
    text_ += "\n";
    ForEachClass([this](const ClassDescription& description) {
      text_ += "interface " + interfaceOf(description) + ";\n";
    });
  }

  void AddInterface(const ClassDescription& description) {
    const std::string name = interfaceOf(description);
    text_ += "\n";
    Head({name, description.help}, "object, dual, oleautomation, nonextensible, hidden");
    text_ += "interface " + name + " : IDispatch {\n";
    for (const Member& member : description.members) Add(member);
    if (description.IsCollection()) {
      AddCall("propget, restricted, hidden", kNewEnum, "An enumerator of the elements.", "_NewEnum",
              "[out, retval] IUnknown** Result");
    }
    text_ += "};\n";
  }

  void Add(const Member& member) {
    if (member.call) {
      std::string arguments = textOf(member.parameters);
      if (member.result.kind != Kind::kVoid) {
        append(arguments, ", ", "[out, retval] " + textOf(member.result) + "* Result");
      }
      AddCall(member.isMethod ? "" : "propget", member.number, member.help, member.name, arguments);
    }
    if (member.put) {
      std::string arguments = textOf(member.parameters);
      append(arguments, ", ", textOf(member.value));
      AddCall(member.value.type.kind == Kind::kObject ? "propputref" : "propput", member.number, member.help,
              member.name, arguments);
    }
  }

  void AddCall(const std::string& kind, std::int32_t number, std::string_view help, std::string_view name,
               const std::string& arguments) {
    text_ += "  [" + kind + (kind.empty() ? "" : ", ") + "id(" + std::to_string(number) + "), helpstring(" +
             quoted(help) + ")]\n  HRESULT " + std::string(name) + "(" + arguments + ");\n";
  }

  void AddEvents(const ClassDescription& description) {
    if (description.events.empty()) return;
    const std::string name = eventsOf(description);
    text_ += "\n";
    Head({name, "The events of " + std::string(description.name) + "."}, "hidden");
    text_ += "dispinterface " + name + " {\nproperties:\nmethods:\n";
    for (const EventDescription& event : description.events) {
      text_ += "  [id(" + std::to_string(event.number) + "), helpstring(" + quoted(event.help) +
               ")]\n  void " + std::string(event.name) + "(" + textOf(event.parameters) + ");\n";
    }
    text_ += "};\n";
  }

  void AddClass(const ClassDescription& description) {
    text_ += "\n";
    Head({description.name, description.help}, description.isControl ? "control"
                                               : description.create  ? ""
                                                                     : "noncreatable");
    text_ += "coclass " + std::string(description.name) + " {\n";
    text_ += "  [default] interface " + interfaceOf(description) + ";\n";
    if (!description.events.empty()) {
      text_ += "  [default, source] dispinterface " + eventsOf(description) + ";\n";
    }
    text_ += "};\n";
  }

  const Identifiers& identifiers_;
  std::string_view version_;
  std::string text_;
};

}  // namespace

std::string interfaceDefinition(const Identifiers& identifiers, std::string_view version) {
  return Library(identifiers, version).Text();
}

}  // namespace kestrel::tools
