#include "tools/translations/PoFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/RuntimeError.h"

namespace kestrel::tools {
namespace {

using testing::ElementsAre;

constexpr std::string_view kHeader =
    "# A comment\nmsgid \"\"\nmsgstr \"\"\n\"Language: de\\n\"\n\"Plural-Forms: nplurals=2; plural=n != "
    "1;\\n\"\n\n";

PoFile read(std::string_view entries) { return readPo(std::string(kHeader) + std::string(entries)); }

std::string problemOf(std::string_view entries) {
  try {
    read(entries);
    return {};
  } catch (const RuntimeError& error) {
    return error.Description();
  }
}

TEST(PoFile, HasALanguageAndItsPluralForms) {
  const PoFile file = read("");
  EXPECT_EQ(file.language, "de");
  EXPECT_EQ(file.pluralForms, 2U);
  EXPECT_EQ(file.pluralForm, "n != 1");
  EXPECT_TRUE(file.entries.empty());
}

TEST(PoFile, ListsEntriesInTheOrderOfTheirTexts) {
  const PoFile file =
      read("msgid \"b\"\nmsgstr \"zwei\"\n\n#. remark\nmsgid \"a\"\n\"\\\"c\\\\\\n\"\nmsgstr \"eins\"");
  ASSERT_EQ(file.entries.size(), 2U);
  EXPECT_EQ(file.entries[0].english, "a\"c\\\n");
  EXPECT_THAT(file.entries[0].translations, ElementsAre("eins"));
  EXPECT_EQ(file.entries[1].english, "b");
}

TEST(PoFile, ReadsPluralForms) {
  const PoFile file = read("msgid \"a\"\nmsgid_plural \"as\"\nmsgstr[0] \"x\"\nmsgstr[1] \"xs\"\n");
  ASSERT_EQ(file.entries.size(), 1U);
  EXPECT_EQ(file.entries[0].plural, "as");
  EXPECT_THAT(file.entries[0].translations, ElementsAre("x", "xs"));
}

TEST(PoFile, LeavesOutWhatIsNotTranslated) {
  EXPECT_TRUE(read("msgid \"a\"\nmsgstr \"\"\n").entries.empty());
  EXPECT_TRUE(read("#, fuzzy\nmsgid \"a\"\nmsgstr \"x\"\n").entries.empty());
  EXPECT_TRUE(read("msgid \"a\"\nmsgid_plural \"as\"\nmsgstr[0] \"x\"\n").entries.empty())
      << "a form is missing";
  EXPECT_TRUE(read("#~ msgid \"a\"\n#~ msgstr \"x\"\n").entries.empty());
}

TEST(PoFile, NamesTheLineThatIsWrong) {
  EXPECT_EQ(problemOf("msgid a\n"), "line 7: a text without quotation marks");
  EXPECT_EQ(problemOf("msgid \"a\\q\"\n"), "line 7: an unknown escape sequence");
  EXPECT_EQ(problemOf("\nmessage \"a\"\n"), "line 8: an unknown keyword");
  EXPECT_EQ(problemOf("msgid\n"), "line 7: a keyword without a text");
  EXPECT_EQ(problemOf("\"a\"\n"), "line 7: a text that belongs to nothing");
  EXPECT_THROW(readPo("msgid \"\"\nmsgstr \"Plural-Forms: x\"\n"), RuntimeError) << "no language";
  EXPECT_THROW(readPo("msgid \"\"\nmsgstr \"Language: de\\nPlural-Forms: nplurals=2; plural=exit(n);\\n\"\n"),
               RuntimeError)
      << "code";
}

}  // namespace
}  // namespace kestrel::tools
