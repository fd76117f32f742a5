// The real catalogs with the sentences that the real parts compose.

#include "translations/Catalogs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <string>
#include <vector>

#include "base/RuntimeError.h"
#include "engine/codecs/Codecs.h"
#include "platform/filetransfer/Texts.h"

namespace kestrel::translations {
namespace {

class Catalogs : public testing::TestWithParam<const char*> {
 protected:
  std::string translated(std::string_view english) const { return catalog_.Translated(english); }

  /// The text is translated as a whole: no word of it is left, but for those of `kept`.
  void expectTranslated(const std::string& english, const std::vector<std::string>& kept = {}) const {
    const std::string text = translated(english);
    EXPECT_NE(text, english);
    for (const std::string& part : kept) EXPECT_NE(text.find(part), std::string::npos) << text;
    for (const char* word : {" the ", "The ", " is ", " was ", " file", "cannot", "could not"}) {
      EXPECT_EQ(text.find(word), std::string::npos) << '"' << word << "\" in " << text;
    }
  }

  const Catalog catalog_{*catalogTableOf(GetParam())};
};

std::string decodeErrorOf(std::vector<std::uint8_t> bytes) {
  try {
    engine::decode(bytes);
    return {};
  } catch (const RuntimeError& error) {
    return error.Description();
  }
}

std::string fileErrorOf(const std::string& path) {
  try {
    engine::decodeFile(path);
    return {};
  } catch (const RuntimeError& error) {
    return error.Description();
  }
}

TEST_P(Catalogs, TranslateErrorsOfFiles) {
  expectTranslated(fileErrorOf("/nowhere/at all.png"), {"/nowhere/at all.png"});
  expectTranslated(decodeErrorOf({}));
  expectTranslated(decodeErrorOf({1, 2, 3}));
  // Headers without a picture.
  expectTranslated(decodeErrorOf({'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0, 0, 0, 0x3B}), {"GIF"});
  expectTranslated(
      decodeErrorOf({'8', 'B', 'P', 'S', 0, 9, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 1, 0, 0, 0, 1, 0, 8, 0, 3}),
      {"PSD", "9"});
}

TEST_P(Catalogs, TranslateReportsOfFileOperations) {
  using transfer::Operation;
  for (const Operation operation :
       {Operation::kCopy, Operation::kMove, Operation::kTrash, Operation::kDelete}) {
    SCOPED_TRACE(transfer::titleOf(operation));
    transfer::Request request;
    request.operation = operation;
    request.sources = {"/a/one.png", "/a/two.png", "/a/three.png"};
    transfer::Report report;
    report.done = 1;
    report.failed = {{"/a/one.png", "permission is denied"}, {"/a/two.png", "permission is denied"}};
    report.left = {{"/b/three.png", "the disk is full"}};
    std::vector<std::string> kept = {"\"one.png\"", "/b/three.png", "/a"};
    // Arabic has a form for two, without the number.
    if (GetParam() != std::string("ar")) kept.emplace_back("2");
    expectTranslated(transfer::textOf(report, request), kept);
    report.canceled = true;
    report.done = 0;
    expectTranslated(transfer::textOf(report, request), {"3"});
    request.sources = {"/a/one.png"};
    report = {};
    report.failed = {{"/a/one.png", "its name is too long"}};
    expectTranslated(transfer::textOf(report, request), {"/a/one.png"});
  }
}

TEST_P(Catalogs, TranslateQuestionsAboutFiles) {
  transfer::Request request;
  for (const transfer::Operation operation : {transfer::Operation::kTrash, transfer::Operation::kDelete}) {
    request.operation = operation;
    request.sources = {"/a/Open"};
    expectTranslated(transfer::confirmationOf(request), {"Open"});
    request.sources = {"/a/one.png", "/a/two.png", "/a/three.png", "/a/four.png"};
    expectTranslated(transfer::confirmationOf(request), {"4"});
  }
  transfer::Question question;
  question.source.path = "/a/one.png";
  expectTranslated(transfer::noTrashQuestionOf(question), {"one.png"});
  question.problem = "it is on another disk";
  expectTranslated(transfer::noTrashQuestionOf(question), {"one.png"});
}

TEST_P(Catalogs, TranslateTimes) {
  std::set<std::string> texts;
  for (const int seconds : {1, 35, 60, 300, 3600, 4 * 3600, 40 * 3600}) {
    const std::string english = transfer::textOf(std::chrono::seconds(seconds));
    EXPECT_NE(translated(english), english);
    texts.insert(translated(english));
  }
  EXPECT_EQ(texts.size(), 7U) << "each has its number";
}

TEST_P(Catalogs, KeepFileNamesThatAreWordsOfTheCatalog) {
  const std::string text = translated("Unable to open image \"Save\" due to error \"The disk is full.\".");
  EXPECT_NE(text.find("Save"), std::string::npos) << text;
  EXPECT_EQ(text.find("disk"), std::string::npos) << text;
}

INSTANTIATE_TEST_SUITE_P(Languages, Catalogs, testing::Values("de", "es", "ja", "ar"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST(CatalogTables, AreFoundByLocale) {
  ASSERT_NE(catalogTableOf("de_AT.UTF-8"), nullptr);
  EXPECT_EQ(catalogTableOf("de_AT.UTF-8")->language, "de");
  EXPECT_EQ(catalogTableOf("ar-EG")->language, "ar");
  EXPECT_TRUE(catalogTableOf("ar")->rightToLeft);
  EXPECT_FALSE(catalogTableOf("ja")->rightToLeft);
  for (const char* locale : {"", "C", "en_US", "POSIX", "d", "deu"})
    EXPECT_EQ(catalogTableOf(locale), nullptr);
}

TEST(CatalogTables, AreSortedAndHaveTheSameTexts) {
  const CatalogTable& first = catalogTables().front();
  for (const CatalogTable& table : catalogTables()) {
    ASSERT_EQ(table.entries.size(), first.entries.size()) << table.language;
    for (std::size_t i = 0; i < table.entries.size(); ++i) {
      EXPECT_EQ(table.entries[i].english, first.entries[i].english) << table.language;
      if (i == 0) continue;
      EXPECT_LT(table.entries[i - 1].english, table.entries[i].english);
    }
  }
}

TEST(CatalogTables, ArabicHasSixFormsOfACount) {
  const auto form = catalogTableOf("ar")->pluralForm;
  EXPECT_EQ(form(0), 0U);
  EXPECT_EQ(form(1), 1U);
  EXPECT_EQ(form(2), 2U);
  EXPECT_EQ(form(10), 3U);
  EXPECT_EQ(form(11), 4U);
  EXPECT_EQ(form(100), 5U);
  EXPECT_EQ(form(103), 3U);
}

}  // namespace
}  // namespace kestrel::translations
