#include "base/Catalog.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace kestrel {
namespace {

constexpr std::string_view kOpen[] = {"Öffnen"};
constexpr std::string_view kOpenError[] = {"Fehler „{2}“ bei „%1“."};
constexpr std::string_view kDenied[] = {"Zugriff verweigert"};
constexpr std::string_view kFiles[] = {"%n Datei in %1", "%n Dateien in %1"};
constexpr std::string_view kAsk[] = {"Diese Datei löschen?", "Diese %n Dateien löschen?"};
constexpr std::string_view kRead[] = {"Die Datei „%1“ ist unlesbar: {2}."};
constexpr std::string_view kParts[] = {"%1 von %2"};
constexpr std::string_view kSave[] = {"Möchten Sie speichern?"};
constexpr std::string_view kSize[] = {"Die Datei behauptet %1 x %2 Pixel."};
constexpr std::string_view kSizeAndBytes[] = {"Die Datei behauptet %1 x %2 Pixel in %3 Byte."};
constexpr std::string_view kDamaged[] = {"Die %1-Datei ist kaputt: {2}."};

constexpr CatalogEntry kEntries[] = {
    {"%1 of %2", "", kParts},
    {"Delete this file?", "Delete these %n files?", kAsk},
    {"Do you want to save?", "", kSave},
    {"Error \"{2}\" with \"%1\".", "", kOpenError},
    {"Open", "", kOpen},
    {"The %1 file is broken: {2}.", "", kDamaged},
    {"The file \"%1\" cannot be read: {2}.", "", kRead},
    {"The file claims %1 x %2 pixels in %3 bytes.", "", kSizeAndBytes},
    {"The file claims %1 x %2 pixels.", "", kSize},
    {"one file in %1", "%n files in %1", kFiles},
    {"permission is denied", "", kDenied},
};
const CatalogTable kTable{"de", false, [](std::uint64_t n) { return static_cast<std::size_t>(n != 1); },
                          kEntries};

class CatalogOfGerman : public testing::Test {
 protected:
  std::string translated(std::string_view english) const { return catalog_.Translated(english); }

 private:
  const Catalog catalog_{kTable};
};

TEST_F(CatalogOfGerman, TranslatesItsEntriesAndLeavesOtherTexts) {
  EXPECT_EQ(translated("Open"), "Öffnen");
  EXPECT_EQ(translated("open"), "open");
  EXPECT_EQ(translated("Opened"), "Opened");
  EXPECT_EQ(translated(""), "");
  EXPECT_EQ(translated("100 %"), "100 %");
}

TEST_F(CatalogOfGerman, PutsThePartsOfASentenceWhereTheTranslationHasThem) {
  EXPECT_EQ(translated("Error \"permission is denied\" with \"a b.png\"."),
            "Fehler „Zugriff verweigert“ bei „a b.png“.");
}

TEST_F(CatalogOfGerman, TranslatesPartsInBracesOnly) {
  EXPECT_EQ(translated("Error \"Open\" with \"Open\"."), "Fehler „Öffnen“ bei „Open“.");
  EXPECT_EQ(translated("Error \"unknown\" with \"Open\"."), "Fehler „unknown“ bei „Open“.");
  EXPECT_EQ(translated("Error \"The file \"/x\" cannot be read: permission is denied.\" with \"y\"."),
            "Fehler „Die Datei „/x“ ist unlesbar: Zugriff verweigert.“ bei „y“.");
}

TEST_F(CatalogOfGerman, ChoosesTheFormForTheCount) {
  EXPECT_EQ(translated("1 files in /tmp"), "1 Datei in /tmp");
  EXPECT_EQ(translated("2 files in /tmp"), "2 Dateien in /tmp");
  EXPECT_EQ(translated("many files in /tmp"), "many files in /tmp") << "the count is a number";
  EXPECT_EQ(translated("Delete this file?"), "Diese Datei löschen?");
  EXPECT_EQ(translated("Delete these 12 files?"), "Diese 12 Dateien löschen?");
  EXPECT_EQ(translated("Delete these 99999999999999999999999 files?"),
            "Diese 99999999999999999999999 Dateien löschen?");
}

TEST_F(CatalogOfGerman, PrefersTheEntryWithTheLongestFixedText) {
  EXPECT_EQ(translated("The file claims 1 x 2 pixels in 3 bytes."),
            "Die Datei behauptet 1 x 2 Pixel in 3 Byte.");
  EXPECT_EQ(translated("The file claims 1 x 2 pixels."), "Die Datei behauptet 1 x 2 Pixel.");
}

TEST_F(CatalogOfGerman, RecognizesNoSentenceInAFewLetters) {
  EXPECT_EQ(translated("Lord of Rings"), "Lord of Rings") << "a name of a file";
  EXPECT_EQ(translated("%1 of %2"), "%1 von %2") << "for a caller that fills it";
}

TEST_F(CatalogOfGerman, TranslatesLinesAndSentencesOfTheirOwn) {
  EXPECT_EQ(translated("Open\r\rDo you want to save?"), "Öffnen\r\rMöchten Sie speichern?");
  EXPECT_EQ(translated("Do you want to save? The PNG file is broken: permission is denied."),
            "Möchten Sie speichern? Die PNG-Datei ist kaputt: Zugriff verweigert.");
  EXPECT_EQ(translated("A host's sentence. Do you want to save?"),
            "A host's sentence. Möchten Sie speichern?");
  EXPECT_EQ(translated("Dr. Open"), "Dr. Open") << "no sentence: a name";
}

TEST_F(CatalogOfGerman, EndsASentenceBeforeTheNextOne) {
  EXPECT_EQ(translated("The PNG file is broken: permission is denied. The file claims 1 x 2 pixels."),
            "Die PNG-Datei ist kaputt: Zugriff verweigert. Die Datei behauptet 1 x 2 Pixel.");
  EXPECT_EQ(translated("Error \"It is new. It is bad.\" with \"a\"."),
            "Fehler „It is new. It is bad.“ bei „a“.")
      << "two sentences inside of one";
}

TEST_F(CatalogOfGerman, LeavesEmptyPartsAlone) {
  EXPECT_EQ(translated("Error \"\" with \"a\"."), "Error \"\" with \"a\".");
  EXPECT_EQ(translated("The file \"\" cannot be read: ."), "The file \"\" cannot be read: .");
}

TEST(Catalog, JoinsSentencesWithoutABlankWhereTheScriptHasNone) {
  static constexpr std::string_view kFirst[] = {"開けません。"};
  static constexpr std::string_view kSecond[] = {"保存しますか?"};
  static constexpr CatalogEntry entries[] = {{"It cannot be opened.", "", kFirst}, {"Save it?", "", kSecond}};
  const CatalogTable table{"ja", false, [](std::uint64_t) { return std::size_t{0}; }, entries};
  EXPECT_EQ(Catalog(table).Translated("It cannot be opened. Save it?"), "開けません。保存しますか?");
}

}  // namespace
}  // namespace kestrel
