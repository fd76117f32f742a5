// Saving a copy, which no member and no command does yet: the private member that all saves go through.

#include "EditorTest.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

using Save = bool (ImageProcessingCtl::*)(std::string, std::int32_t, bool);

/// Explicit instantiation may name a private member.
template <Save member>
struct Private {
  friend Save privateSave() { return member; }
};
Save privateSave();
template struct Private<&ImageProcessingCtl::zSaveImage>;

class EditorSaveCopy : public EditorTest {
 protected:
  bool saveCopy(const std::string& file, std::int32_t format = 0) {
    return (control().*privateSave())(file, format, false);
  }
  std::vector<std::string> recentFiles() {
    std::vector<std::string> names;
    CommandItems& items = command("mnuFileMRU").Items();
    for (std::int32_t i = 1; i <= items.Count(); ++i) names.push_back(items.Item(i).Text);
    return names;
  }
};

TEST_P(EditorSaveCopy, MarksThePictureAsUnsavedAndKeepsItsName) {
  const std::string file = startWithPicture();
  ASSERT_FALSE(view().Modified());
  int saves = 0;
  connections_.push_back(editor().ImageSave.Connect([&](const std::string&) { ++saves; }));
  EXPECT_FALSE(saveCopy(path("copy.png"))) << "the result is that of the picture's own file";
  EXPECT_TRUE(exists(path("copy.png")));
  EXPECT_TRUE(view().Modified());
  EXPECT_EQ(editor().Filename(), file);
  EXPECT_EQ(editor().Format(), 2);
  EXPECT_THAT(recentFiles(), ElementsAre(file));
  EXPECT_EQ(saves, 0);
  EXPECT_EQ(panel("pnlStatus"), "");
}

TEST_P(EditorSaveCopy, TakesAForcedFormat) {
  startWithPicture("open.png", 2);
  saveCopy(path("copy.png"), 1);
  EXPECT_THAT(contents(path("copy.png")), StartsWith("\xFF\xD8\xFF")) << "JPEG data";
  saveCopy(path("other.jpg"));
  EXPECT_THAT(contents(path("other.jpg")), StartsWith("\x89PNG")) << "none: the picture's own format";
}

TEST_P(EditorSaveCopy, UpdatesAThumbnailThatExists) {
  startWithPicture();
  options().ThumbnailAutomaticUpdate(true);
  write(path("copy_thumb.png"), "old");
  saveCopy(path("copy.png"));
  EXPECT_THAT(contents(path("copy_thumb.png")), StartsWith("\x89PNG"));
}

TEST_P(EditorSaveCopy, ThatFailsLeavesThePictureAsItWas) {
  startWithPicture();
  user().answers(kAnswerOK);
  EXPECT_FALSE(saveCopy(path("nowhere") + platform().files().separator() + "copy.png"));
  EXPECT_FALSE(view().Modified());
  ASSERT_EQ(user().boxes().size(), 1u);
  EXPECT_EQ(user().boxes()[0].title, "Save Image");
  EXPECT_THAT(view().Notice(), IsEmpty()) << "the strip is for saves of the picture";
}

KESTREL_WITH_BOTH_PATHS(EditorSaveCopy);

}  // namespace
}  // namespace kestrel
