#include "tools/interface/InterfaceDefinition.h"

#include <sstream>

#include "Passages.h"
#include "base/RuntimeError.h"
#include "host/dispatch/Registry.h"
#include "tools/files/FileBytes.h"

namespace kestrel::tools {
namespace {

using namespace dispatch;
using testing::HasSubstr;
using testing::Not;

constexpr std::string_view kGuid = "00000000-0000-4000-8000-000000000001";

class InterfaceDefinition : public testing::Test {
 protected:
  std::string Interface(std::string_view name) const {
    return passage(text_, "\ninterface _" + std::string(name) + " : IDispatch {", "\n};");
  }
  std::string Events(std::string_view name) const {
    return passage(text_, "\ndispinterface __" + std::string(name) + " {", "\n};");
  }
  std::string Class(std::string_view name) const {
    return passage(text_, "\ncoclass " + std::string(name) + " {", "\n};");
  }
  /// The attributes of the type that begins so.
  std::string Attributes(const std::string& type) const {
    const std::string before = text_.substr(0, text_.find("\n" + type));
    return before.substr(before.rfind("\n[\n"));
  }
  /// Pictures are the system's own objects.
  template <typename Check>
  static void ForEachClass(Check check) {
    for (const ClassDescription* description : Classes()) {
      if (description->name != "Picture") check(*description);
    }
  }

  const std::string identifiers_ = readFile(KESTREL_IDENTIFIERS);
  const std::string text_ = interfaceDefinition(Identifiers(identifiers_), "2.0");
};

/// The declarations of that name and number that begin so.
std::size_t declarations(const std::string& type, const std::string& kind, std::int32_t number,
                         std::string_view result, std::string_view name) {
  const std::string start = "\n  [" + kind + "id(" + std::to_string(number) + "), helpstring(";
  std::size_t count = 0;
  for (std::size_t at = type.find(start); at != std::string::npos; at = type.find(start, at + 1)) {
    const std::string declaration = type.substr(type.find('\n', at + 1));
    if (declaration.starts_with("\n  " + std::string(result) + " " + std::string(name) + "(")) ++count;
  }
  return count;
}

TEST_F(InterfaceDefinition, HasEachMemberByItsNumber) {
  ForEachClass([this](const ClassDescription& owner) {
    const std::string type = Interface(owner.name);
    for (const Member& member : owner.members) {
      SCOPED_TRACE(std::string(owner.name) + "." + std::string(member.name));
      const auto count = [&](const std::string& kind) {
        return declarations(type, kind, member.number, "HRESULT", member.name);
      };
      EXPECT_EQ(count(""), member.isMethod ? 1U : 0U);
      EXPECT_EQ(count("propget, "), !member.isMethod && member.call ? 1U : 0U);
      EXPECT_EQ(count("propput, ") + count("propputref, "), member.put ? 1U : 0U);
    }
  });
}

TEST_F(InterfaceDefinition, HasEachEventByItsNumber) {
  ForEachClass([this](const ClassDescription& owner) {
    if (owner.events.empty()) {
      EXPECT_THAT(text_, Not(HasSubstr("dispinterface __" + std::string(owner.name) + " {")));
      return;
    }
    const std::string type = Events(owner.name);
    for (const EventDescription& event : owner.events) {
      EXPECT_EQ(declarations(type, "", event.number, "void", event.name), 1U)
          << owner.name << "." << event.name;
    }
  });
}

TEST_F(InterfaceDefinition, HasEachValueOfEachEnumeration) {
  for (const EnumerationDescription* enumeration : Enumerations()) {
    const std::string values = passage(text_, "\nenum " + std::string(enumeration->name) + " {", "\n}");
    for (const EnumerationValue& value : enumeration->values) {
      EXPECT_THAT(values + ",\n",
                  HasSubstr("\n  " + std::string(value.name) + " = " + std::to_string(value.value) + ",\n"));
    }
  }
}

TEST_F(InterfaceDefinition, HasACoclassForEachClass) {
  ForEachClass([this](const ClassDescription& owner) {
    const std::string name(owner.name);
    EXPECT_THAT(Class(name), HasSubstr("[default] interface _" + name + ";"));
    if (!owner.events.empty()) {
      EXPECT_THAT(Class(name), HasSubstr("[default, source] dispinterface __" + name + ";"));
    }
    const bool isMade = owner.create || owner.isControl;
    EXPECT_EQ(countOf(Attributes("coclass " + name + " {"), "noncreatable"), isMade ? 0U : 1U) << name;
  });
  EXPECT_THAT(Attributes("coclass ImageProcessingCtl {"), HasSubstr("  control,\n"));
  EXPECT_THAT(Attributes("coclass ImageBrowserCtl {"), HasSubstr("  control,\n"));
  EXPECT_THAT(text_, Not(HasSubstr("coclass Picture {")));
}

TEST_F(InterfaceDefinition, IsOfTheLibraryAndItsVersion) {
  EXPECT_THAT(Attributes("library KestrelLib2 {"), HasSubstr("  version(2.0),\n"));
  EXPECT_THAT(Attributes("interface _ImageProcessing :"), HasSubstr("  object, dual, oleautomation"));
}

// Else Wine's compiler writes a wrong last byte of the library's identifier.
TEST_F(InterfaceDefinition, HasTheInterfacesBeforeTheDispatchInterfaces) {
  EXPECT_LT(text_.rfind(" : IDispatch {"), text_.find("\ndispinterface "));
}

TEST_F(InterfaceDefinition, PassesArgumentsAsAutomationDoes) {
  const std::string editor = Interface("ImageProcessingCtl");
  EXPECT_THAT(editor, HasSubstr("HRESULT OpenImage([in, optional, defaultvalue(\"\")] BSTR Filename, "
                                "[out, retval] VARIANT_BOOL* Result);"));
  EXPECT_THAT(editor, HasSubstr("HRESULT Rotate([in] float Angle, "
                                "[in, optional, defaultvalue(-1)] OLE_COLOR BackColor, "
                                "[in, optional, defaultvalue(0)] VARIANT_BOOL ApplyToSelection);"));
  EXPECT_THAT(editor, HasSubstr("HRESULT GetThumbnailEx([in, out] ThumbnailSizeTypeEnum* SizeType, "));
  EXPECT_THAT(editor, HasSubstr("HRESULT Picture([out, retval] IPictureDisp** Result);"));
  EXPECT_THAT(editor, HasSubstr("HRESULT Picture([in] IPictureDisp* Value);"));
  EXPECT_EQ(declarations(editor, "propputref, ", 17, "HRESULT", "Picture"), 1U);
  EXPECT_EQ(declarations(editor, "propput, ", 19, "HRESULT", "Tool"), 1U);
  EXPECT_THAT(editor, HasSubstr("HRESULT Commands([out, retval] _Commands** Result);"));
  EXPECT_THAT(Interface("Form"), HasSubstr("HRESULT hWnd([out, retval] long* Result);"));
  EXPECT_THAT(Interface("FolderTreeView"),
              HasSubstr("HRESULT NewFolder([in, optional, defaultvalue(0)] _Form* ParentForm, "));
  EXPECT_THAT(
      Events("ImageProcessing"),
      HasSubstr(
          "void RequestSaveFilename([in, out] BSTR* Filename, [in, out] VARIANT_BOOL* CancelDefault);"));
}

TEST_F(InterfaceDefinition, LetsHostsEnumerateEachCollection) {
  ForEachClass([this](const ClassDescription& owner) {
    const std::string type = Interface(owner.name);
    EXPECT_EQ(declarations(type, "propget, restricted, hidden, ", -4, "HRESULT", "_NewEnum"),
              owner.IsCollection() ? 1U : 0U)
        << owner.name;
  });
  EXPECT_TRUE(FindClass("Commands")->IsCollection());
}

TEST_F(InterfaceDefinition, KeepsQuotesInHelpTexts) {
  EXPECT_THAT(Interface("ImageView"), HasSubstr(R"(under \"No Undo\".)"));
}

// -- Identifiers ------------------------------------------------------------------------------------------

TEST_F(InterfaceDefinition, UsesEachIdentifierOnce) {
  std::size_t count = 0;
  std::istringstream lines(identifiers_);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('#')) continue;
    ++count;
    EXPECT_EQ(countOf(text_, "uuid(" + line.substr(line.find(' ') + 1) + ")"), 1U) << line;
  }
  EXPECT_EQ(countOf(text_, "uuid("), count);
}

TEST(Identifiers, AreFoundByName) {
  const Identifiers identifiers("# A comment.\n\nKestrelLib2 " + std::string(kGuid) + "\n");
  EXPECT_EQ(identifiers.Of("KestrelLib2"), kGuid);
}

TEST(Identifiers, AreNeededForEachName) {
  try {
    Identifiers("").Of("_Image");
    FAIL() << "no error";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), err::kInvalidCall);
    EXPECT_THAT(error.Description(), HasSubstr("There is no GUID for _Image."));
  }
}

TEST(Identifiers, RefuseWhatIsNoNewNameWithANewGuid) {
  const std::string guid(kGuid);
  const std::string other = guid.substr(0, guid.size() - 1) + "2";
  EXPECT_NO_THROW(Identifiers("A " + guid + "\nB " + other + "\n"));
  EXPECT_THROW(Identifiers("A " + guid + "\nA " + other + "\n"), RuntimeError);
  EXPECT_THROW(Identifiers("A " + guid + "\nB " + guid + "\n"), RuntimeError);
  EXPECT_THROW(Identifiers("A\n"), RuntimeError);
  EXPECT_THROW(Identifiers("A " + guid + " more\n"), RuntimeError);
  EXPECT_THROW(Identifiers("A " + guid.substr(1) + "\n"), RuntimeError);
  EXPECT_THROW(Identifiers("A G" + guid.substr(1) + "\n"), RuntimeError);
}

}  // namespace
}  // namespace kestrel::tools
