#include <algorithm>
#include <filesystem>
#include <fstream>

#include "ContractTest.h"
#include "imaging/contract/controls/CheckBox.h"

namespace kestrel::contract {
namespace {

class Services : public ContractTest {
 protected:
  void write(const std::string& path) { std::ofstream(user().host(path)) << "content"; }
  bool exists(const std::string& path) { return std::filesystem::exists(user().host(path)); }
};

TEST_P(Services, FileHelpersSplitNamesAtBothSeparators) {
  FileHelpers& files = platform().FileHelpers();
  EXPECT_EQ(files.PathWithoutExtension("c:\\a\\b.c.png"), "c:\\a\\b.c");
  EXPECT_EQ(files.PathWithoutExtension("/a/b.c.png"), "/a/b.c");
  EXPECT_EQ(files.PathWithoutExtension("/a.d/b"), "/a.d/b");
  EXPECT_EQ(files.GetExtension("c:\\a\\b.c.PNG"), "PNG");
  EXPECT_EQ(files.GetExtension("/a.d/b"), "");
  EXPECT_EQ(files.GetFileName("c:\\a\\b.png"), "b.png");
  EXPECT_EQ(files.GetFileName("/a/b.png"), "b.png");
  EXPECT_EQ(files.GetFileName("b.png"), "b.png");
}

TEST_P(Services, CompactPathKeepsToTheLength) {
  FileHelpers& files = platform().FileHelpers();
  EXPECT_EQ(files.CompactPath("c:\\a\\b.png", 50, "\\"), "c:\\a\\b.png");
  const std::string compact =
      files.CompactPath("c:\\one folder\\another folder\\a third folder\\and a fourth\\b.png", 40, "\\");
  EXPECT_LE(compact.size(), 40u);
  EXPECT_NE(compact.find("..."), std::string::npos);
  EXPECT_TRUE(compact.ends_with("\\b.png")) << compact;
}

TEST_P(Services, ResolvePathReturnsAPathThatDoesNotExistAsGiven) {
  FileHelpers& files = platform().FileHelpers();
  const std::string missing = path("no such file.png");
  EXPECT_EQ(files.ResolvePath(missing), missing);
  write(path("there.png"));
  EXPECT_TRUE(platform().FormUtility().FileExists(files.ResolvePath(path("there.png"))));
}

TEST_P(Services, FileExistsForFilesAndFolders) {
  FormUtility& utility = platform().FormUtility();
  EXPECT_FALSE(utility.FileExists(path("a.png")));
  write(path("a.png"));
  EXPECT_TRUE(utility.FileExists(path("a.png")));
  EXPECT_TRUE(utility.FileExists(user().folder()));
  EXPECT_FALSE(utility.FileExists(""));
}

TEST_P(Services, TheShellListsTheEntriesOfAFolder) {
  Shell& shell = platform().Shell();
  const std::string folder = path("listed");
  shell.CreateFolder(folder);
  const std::string separator = platform().FileHelpers().PathSeparator();
  EXPECT_TRUE(shell.Entries(folder).empty());
  EXPECT_EQ(shell.FirstSubfolder(folder), "");
  write(folder + separator + "a.png");
  shell.CreateFolder(folder + separator + "sub");
  std::string names;
  for (const FolderEntry& entry : shell.Entries(folder))
    names += entry.Name + (entry.IsDirectory ? "/ " : " ");
  EXPECT_TRUE(names == "a.png sub/ " || names == "sub/ a.png ") << names;
  EXPECT_EQ(shell.FirstSubfolder(folder), "sub");
}

TEST_P(Services, TheShellReturnsNothingForMissingItems) {
  Shell& shell = platform().Shell();
  EXPECT_TRUE(shell.Entries(path("nowhere")).empty());
  EXPECT_EQ(shell.FirstSubfolder(path("nowhere")), "");
  EXPECT_NE(
      errorOf([&] { shell.CreateFolder(path("nowhere") + platform().FileHelpers().PathSeparator() + "x"); }),
      0);
}

TEST_P(Services, TheShellHasAStartDrive) {
  const std::vector<std::string> drives = platform().Shell().LogicalDrives();
  ASSERT_FALSE(drives.empty());
  EXPECT_TRUE(drives.front().ends_with(platform().FileHelpers().PathSeparator()));
  EXPECT_EQ(platform().Shell().DriveType(drives.front()), kDriveFixed);
}

TEST_P(Services, ASinkHolderDoesNotKeepItsObjectAlive) {
  class Sink : public Object {
   public:
    std::string TypeName() const override { return "Sink"; }
  };
  const std::unique_ptr<SinkHolder> holder = platform().CreateSinkHolder();
  EXPECT_EQ(holder->Object(), nullptr);
  auto sink = std::make_shared<Sink>();
  holder->Object(sink);
  EXPECT_EQ(holder->Object(), sink);
  sink.reset();
  EXPECT_EQ(holder->Object(), nullptr);
}

TEST_P(Services, AHelpViewerRaises53WithoutABook) {
  const std::unique_ptr<HelpViewer> help = platform().CreateHelpViewer();
  help->HelpFile("NoSuchBook.chm");
  EXPECT_EQ(help->HelpFile(), "NoSuchBook.chm");
  EXPECT_EQ(errorOf([&] { help->ShowTopic("default.html", 0); }), 53);
}

TEST_P(Services, ACanvasFillsThePartOfARectangleInside) {
  const std::unique_ptr<Canvas> canvas = platform().CreateCanvas(8, 4);
  EXPECT_EQ(canvas->Width(), 8);
  EXPECT_EQ(canvas->Height(), 4);
  canvas->FillRectangle({0, 0, 8, 4}, 0x00112233);
  canvas->FillRectangle({6, -2, 10, 4}, 0x000000FF);
  const PicturePtr picture = canvas->Picture();
  ASSERT_EQ(picture->Width(), 8);
  ASSERT_EQ(picture->Height(), 4);
  const PixelRows rows = picture->Pixels();
  const auto pixel = [&](int x, int y) {
    const std::uint8_t* p = rows.Data + static_cast<std::size_t>(y) * rows.Stride + x * 4;
    return (p[0] << 16) | (p[1] << 8) | p[2];
  };
  EXPECT_EQ(pixel(0, 0), 0x332211);
  EXPECT_EQ(pixel(5, 1), 0x332211);
  EXPECT_EQ(pixel(6, 1), 0xFF0000);
  EXPECT_EQ(pixel(7, 0), 0xFF0000);
  EXPECT_EQ(pixel(7, 2), 0x332211);
  canvas->FillRectangle({0, 0, 8, 4}, 0);
  EXPECT_EQ(pixel(0, 0), 0x332211) << "a picture taken earlier is unchanged";
}

TEST_P(Services, ColorsAreMadeFromAnyNumber) {
  const std::shared_ptr<Colors> colors = platform().CreateColors();
  const Colour color = colors->Create(0x00332211, 77);
  EXPECT_EQ(color.Red(), 0x11);
  EXPECT_EQ(color.Green(), 0x22);
  EXPECT_EQ(color.Blue(), 0x33);
  EXPECT_EQ(color.Alpha(), 77);
  EXPECT_TRUE(colors->Create(-1).IsNone());
}

TEST_P(Services, WindowsHaveScreensAndPositions) {
  WindowFunctions& windows = platform().WindowFunctions();
  ASSERT_GE(windows.ScreenCount(), 1);
  EXPECT_GT(windows.ScreenArea(0).Width, 0);
  Site& site = user().editorSite();
  auto& view = Bind<ImageView>(site, "igxImage");
  const Point zero = windows.ScreenToClient(view.hWnd(), {0, 0});
  const Point other = windows.ScreenToClient(view.hWnd(), {30, 40});
  // A view uses device pixels, a screen may not.
  const std::int32_t factor = (other.X - zero.X) / 30;
  EXPECT_GE(factor, 1);
  EXPECT_EQ(other.X - zero.X, 30 * factor);
  EXPECT_EQ(other.Y - zero.Y, 40 * factor);
  EXPECT_GE(platform().Screen().TwipsPerPixelX(), 1);
  EXPECT_GE(platform().Screen().TwipsPerPixelY(), 1);
}

TEST_P(Services, TheClipboardHoldsABitmapAfterACopy) {
  user().copyText("a text");
  EXPECT_FALSE(platform().Clipboard().GetFormat(kClipboardBitmap));
  const std::shared_ptr<ImgX> picture = platform().CreateImgX();
  EXPECT_EQ(errorOf([&] { picture->Document().Paste(); }), 521);
  const Colour red(0x000000FF);
  picture->Document().NewImage(3, 2, &red);
  picture->Writer().ToClipboard();
  EXPECT_TRUE(platform().Clipboard().GetFormat(kClipboardBitmap));
  const std::shared_ptr<ImgX> pasted = platform().CreateImgX();
  pasted->Document().Paste();
  ASSERT_NE(pasted->Image(), nullptr);
  EXPECT_EQ(pasted->Image()->Width(), 3);
  EXPECT_EQ(pasted->Image()->GetPixel(2, 1).Red(), 255);
}

TEST_P(Services, TheKeyStoreKeepsNumbersAndTextsApart) {
  RegistryStore& store = platform().RegistryStore();
  store.WriteValue(HKEY_CURRENT_USER, "Software\\Test", "Name", "text", kStoreString);
  store.WriteValue(HKEY_CURRENT_USER, "software\\TEST", "Number", 7, kStoreNumber);
  EXPECT_EQ(store.ReadValue(HKEY_CURRENT_USER, "SOFTWARE\\test", "NAME").ToString(), "text");
  store.RootKey("Software");
  EXPECT_EQ(store.GetSetting("Number", 3, kStoreNumber, "Test", HKEY_CURRENT_USER).ToInt32(), 7);
  EXPECT_EQ(store.GetSetting("Number", "none", kStoreString, "Test", HKEY_CURRENT_USER).ToString(), "none");
  EXPECT_EQ(store.GetSetting("Other", 3, kStoreNumber, "Test", HKEY_CURRENT_USER).ToInt32(), 3);
  store.DeleteValue(HKEY_CURRENT_USER, "Software\\Test", "Name");
  store.DeleteValue(HKEY_CURRENT_USER, "Software\\Test", "Name");
  EXPECT_EQ(store.ReadValue(HKEY_CURRENT_USER, "Software\\Test", "Name").TypeCode(), 0);
}

TEST_P(Services, WindowPositionsRestoreAWindow) {
  const std::unique_ptr<Form> form = user().controls();
  WindowPositions& positions = platform().WindowPositions();
  positions.RegistryKey("Software\\Test\\WindowPositions");
  form->Move(40, 50, 420, 330);
  positions.SavePosition(*form, "Test");
  form->Move(100, 120, 500, 400);
  positions.LoadPosition(*form, "Test");
  EXPECT_EQ(form->Width(), 420);
  EXPECT_EQ(form->Height(), 330);
  EXPECT_EQ(form->Left(), 40);
  EXPECT_EQ(form->Top(), 50);
}

TEST_P(Services, WindowPositionsAreStableOverTenRestores) {
  // Large enough for all controls of the form, small enough for the screen.
  constexpr std::int32_t kWidth = 620, kHeight = 750;
  WindowPositions& positions = platform().WindowPositions();
  positions.RegistryKey("Software\\Test\\WindowPositions");
  std::unique_ptr<Form> form = user().controls();
  form->Move(60, 32, kWidth, kHeight);
  for (int round = 0; round < 10; ++round) {
    form->Show();
    user().settle();
    positions.SavePosition(*form, "Test");
    form->Hide();
    form = user().controls();
    const Connection load = form->Load.Connect([&] { positions.LoadPosition(*form, "Test"); });
    form->Show();
    user().settle();
    EXPECT_EQ(form->Left(), 60) << round;
    EXPECT_EQ(form->Top(), 32) << round;
    EXPECT_EQ(form->Width(), kWidth) << round;
    EXPECT_EQ(form->Height(), kHeight) << round;
    if (HasFailure()) return;
  }
}

TEST_P(Services, WindowPositionsOfAMaximisedWindowAreWhereItIsRestoredTo) {
  constexpr Rectangle kPlace{60, 32, 620, 750};
  const auto placeOf = [](const Form& form) {
    return Rectangle{form.Left(), form.Top(), form.Width(), form.Height()};
  };
  WindowPositions& positions = platform().WindowPositions();
  positions.RegistryKey("Software\\Test\\WindowPositions");
  std::unique_ptr<Form> form = user().controls();
  form->Move(20, 31, 640, 755);
  form->Show();
  user().settle();
  // It was moved last, then maximised: it has never been stored where it was moved to.
  form->Move(kPlace.Left, kPlace.Top, kPlace.Width, kPlace.Height);
  user().settle();
  form->WindowState(kWindowMaximized);
  user().settle();
  EXPECT_EQ(form->NormalPlace(), kPlace);
  positions.SavePosition(*form, "Test");
  form->Hide();

  form = user().controls();
  const Connection load = form->Load.Connect([&] { positions.LoadPosition(*form, "Test"); });
  form->Show();
  user().settle();
  EXPECT_EQ(form->WindowState(), kWindowMaximized);
  EXPECT_EQ(form->NormalPlace(), kPlace);
  form->WindowState(kWindowNormal);
  user().settle();
  EXPECT_EQ(placeOf(*form), kPlace);
  EXPECT_EQ(form->NormalPlace(), kPlace);
}

TEST_P(Services, WindowsWithoutAStoredPositionAreNoLargerThanTheScreen) {
  WindowPositions& positions = platform().WindowPositions();
  positions.RegistryKey("Software\\Test\\WindowPositions");
  const std::unique_ptr<Form> form = user().controls();
  form->Width(9000);
  form->Height(8000);
  positions.LoadPosition(*form, "Never stored");
  form->Show();
  user().settle();
  const Rectangle screen = platform().WindowFunctions().ScreenArea(0);
  const Margins frame = platform().WindowFunctions().FrameOf(form->hWnd());
  const std::int32_t width = form->Width(), height = form->Height();
  // At a large scale factor the form's smallest size may be larger than the screen.
  form->Width(1);
  form->Height(1);
  user().settle();
  EXPECT_EQ(width, std::max(form->Width(), screen.Width - frame.Left - frame.Right));
  EXPECT_EQ(height, std::max(form->Height(), screen.Height - frame.Top - frame.Bottom));
}

TEST_P(Services, WindowPositionsKeepTheTitleBarOnTheScreen) {
  WindowPositions& positions = platform().WindowPositions();
  positions.RegistryKey("Software\\Test\\WindowPositions");
  const std::unique_ptr<Form> form = user().controls();
  form->Move(-5000, -5000, 620, 680);
  positions.SavePosition(*form, "Test");
  positions.LoadPosition(*form, "Test");
  form->Show();
  user().settle();
  const Rectangle screen = platform().WindowFunctions().ScreenArea(0);
  const Margins frame = platform().WindowFunctions().FrameOf(form->hWnd());
  EXPECT_EQ(form->Left(), screen.Left + frame.Left);
  EXPECT_EQ(form->Top(), screen.Top + frame.Top);
}

TEST_P(Services, TheFormSkinAcceptsAnyFormOrControl) {
  const std::unique_ptr<Form> form = user().controls();
  EXPECT_EQ(errorOf([&] { platform().FormSkin().ApplyToForm(*form, -1, -1); }), 0);
  EXPECT_EQ(errorOf([&] { platform().FormSkin().ApplyToForm(user().editorSite(), -1, -1); }), 0);
}

TEST_P(Services, AMouseTrackerRaisesLeaveOncePerStart) {
  auto& view = Bind<ImageView>(user().editorSite(), "igxImage");
  view.Move(0, 0, 400, 300);
  view.Visible(true);
  const std::unique_ptr<MouseTracker> tracker = platform().CreateMouseTracker();
  int left = 0;
  const Connection connection = tracker->MouseLeave.Connect([&] { ++left; });
  tracker->StartTracking();
  EXPECT_FALSE(tracker->Tracking()) << "there is no window to watch";
  tracker->hWnd(view.hWnd());
  EXPECT_EQ(tracker->hWnd(), view.hWnd());
  EXPECT_FALSE(tracker->Tracking());
  tracker->StartTracking();
  EXPECT_TRUE(tracker->Tracking());
  user().leaveWithPointer(view);
  user().leaveWithPointer(view);
  EXPECT_EQ(left, 1);
  tracker->StartTracking();
  tracker->StopTracking();
  EXPECT_FALSE(tracker->Tracking());
  user().leaveWithPointer(view);
  EXPECT_EQ(left, 1);
  tracker->StartTracking();
  tracker->hWnd(0);
  EXPECT_FALSE(tracker->Tracking()) << "binding it to another window stops it";
}

TEST_P(Services, AMouseTrackerRaisesHoverOncePerStart) {
  auto& view = Bind<ImageView>(user().editorSite(), "igxImage");
  view.Move(0, 0, 400, 300);
  view.Visible(true);
  user().settle();
  const std::unique_ptr<MouseTracker> tracker = platform().CreateMouseTracker();
  std::string log;
  const Connection hover = tracker->MouseHover.Connect([&] { log += "hover "; });
  const Connection leave = tracker->MouseLeave.Connect([&] { log += "leave "; });
  tracker->hWnd(view.hWnd());
  user().restWithPointer(view);
  EXPECT_EQ(log, "") << "it was not started";
  tracker->StartTracking();
  user().restWithPointer(view);
  EXPECT_EQ(log, "hover ");
  user().restWithPointer(view);
  EXPECT_EQ(log, "hover ") << "each start arms it once";
  user().leaveWithPointer(view);
  EXPECT_EQ(log, "hover leave ") << "the other event is still armed";
  tracker->StartTracking();
  tracker->StopTracking();
  user().restWithPointer(view);
  EXPECT_EQ(log, "hover leave ");
}

TEST_P(Services, ARetiredObjectLivesUntilAllCallsHaveReturned) {
  std::weak_ptr<int> watch;
  {
    const OpenCalls::Call outer(platform().Calls);
    {
      const OpenCalls::Call inner(platform().Calls);
      auto object = std::make_shared<int>(1);
      watch = object;
      platform().Retire(std::move(object));
      user().settle();
      EXPECT_FALSE(watch.expired());
    }
    user().settle();
    EXPECT_FALSE(watch.expired()) << "the outer call";
  }
  user().settle();
  platform().Retire(std::make_shared<int>(2));
  user().settle();
  EXPECT_TRUE(watch.expired());
}

TEST_P(Services, AnObjectRetiredOutsideOfAllCallsEndsInTheEventLoop) {
  std::weak_ptr<int> watch;
  auto object = std::make_shared<int>(1);
  watch = object;
  platform().Retire(std::move(object));
  user().settle();
  EXPECT_TRUE(watch.expired());
}

KESTREL_ON_ALL_PLATFORMS(Services);

}  // namespace
}  // namespace kestrel::contract
