// The notice strip above the picture.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>
#include <fstream>

#include "../contract/PagedBytes.h"
#include "../contract/TiffBytes.h"
#include "EditorBench.h"
#include "Themes.h"
#include "platform/qt/core/Pictures.h"

namespace kestrel::desktop {
namespace {

constexpr char kDamaged[] = "The file is damaged or truncated: ";

class NoticeOnTheDesktop : public testing::Test {
 protected:
  std::string path(const char* name) { return folder.filePath(QLatin1String(name)).toStdString(); }
  static std::string contents(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  static void write(const std::string& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
  }
  /// A file of noise in that format, truncated to this fraction of its bytes.
  std::string truncated(const char* name, std::int32_t format, double part) {
    const auto picture = bench.platform().CreateImgX();
    picture->Document().FromPicture(qt::ImagePicture(noise(300, 200)));
    picture->Writer().ToFile(path(name), format);
    const std::string whole = contents(path(name));
    write(path(name), whole.substr(0, static_cast<std::size_t>(static_cast<double>(whole.size()) * part)));
    return path(name);
  }
  std::string scan(std::uint32_t pages = 3, std::uint32_t width = 400, std::uint32_t height = 250) {
    write(path("scan.tif"), grayTiff(width, height, pages));
    return path("scan.tif");
  }
  void open(const std::string& file) {
    ASSERT_TRUE(bench.editor().OpenImage(file));
    settle();
  }

  qt::NoticeStrip& strip() { return bench.view().surface().notice(); }
  QLabel& text() { return *strip().findChild<QLabel*>(QStringLiteral("noticeText")); }
  QAbstractButton& button() { return *strip().findChild<QAbstractButton*>(QStringLiteral("noticeButton")); }
  QAbstractButton& cross() { return *strip().findChild<QAbstractButton*>(QStringLiteral("noticeClose")); }

  EditorBench bench;
  QTemporaryDir folder;
};

TEST_F(NoticeOnTheDesktop, SaysWhatAFileHoldsBesidesThePicture) {
  const std::pair<const char*, std::pair<std::string, const char*>> files[] = {
      {"blink.gif", {animatedGif(3), "The file is an animation of 3 frames, of which you see the first."}},
      {"fax.dcx", {grayDcx(3), "The file has 3 pages, of which you see the first."}},
      {"long.emf", {emptyDrawing(40000, 10), "The drawing is too large at its natural size of 40000 x 10"}},
  };
  for (const auto& [name, file] : files) {
    write(path(name), file.first);
    open(path(name));
    EXPECT_TRUE(strip().isVisible()) << name;
    EXPECT_TRUE(text().text().startsWith(QLatin1String(file.second))) << text().text().toStdString();
    EXPECT_EQ(button().isVisible(), bench.editor().Image()->Pages() > 1) << name;
  }
}

TEST_F(NoticeOnTheDesktop, IsShownForATruncatedFile) {
  const std::pair<std::string, std::string> files[] = {
      {truncated("cut.jpg", 1, 0.6), "jpg"},
      {truncated("cut.png", 2, 0.6), "png"},
      {truncated("cut.gif", 11, 0.6), "gif"},
  };
  for (const auto& [file, format] : files) {
    open(file);
    EXPECT_TRUE(strip().isVisible()) << file;
    EXPECT_TRUE(text().text().startsWith(QLatin1String(kDamaged))) << text().text().toStdString();
    EXPECT_FALSE(button().isVisible()) << file;
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << file;
    EXPECT_EQ(bench.editor().Image()->GetPixel(150, 2).Alpha(), 255) << file << " shows its first rows";
    bench.screenshot("notice-damaged-" + format);
  }
  const std::string whole = grayTiff(300, 200);
  write(path("cut.tif"), whole.substr(0, whole.size() - 80 * 300));
  open(path("cut.tif"));
  EXPECT_EQ(text().text(), QLatin1String(kDamaged) + QStringLiteral("only 120 of 200 rows could be read."));
  EXPECT_EQ(bench.editor().Image()->GetPixel(150, 120).Alpha(), 0);
  bench.screenshot("notice-damaged-tif");
}

TEST_F(NoticeOnTheDesktop, IsNotShownForAFileWithoutARow) {
  const std::string whole = grayTiff(300, 200);
  write(path("hopeless.tif"), whole.substr(0, whole.size() - 200 * 300 + 10));
  QString said;
  whenModalOpens([&said](QWidget& dialog) {
    if (auto* const box = qobject_cast<QMessageBox*>(&dialog)) said = box->text();
    dialog.close();
  });
  EXPECT_FALSE(bench.editor().OpenImage(path("hopeless.tif")));
  EXPECT_TRUE(said.startsWith(QStringLiteral("Unable to open image \""))) << said.toStdString();
  EXPECT_FALSE(strip().isVisible());
}

TEST_F(NoticeOnTheDesktop, IsAboveTheCanvasAndFreesItsRoomWhenClosed) {
  const QRect before = bench.canvas().geometry();
  open(scan());
  EXPECT_EQ(strip().geometry().topLeft(), QPoint(0, 0));
  EXPECT_EQ(strip().width(), bench.view().surface().width());
  EXPECT_EQ(bench.canvas().geometry(), before.adjusted(0, strip().height(), 0, 0));
  EXPECT_LT(strip().height(), 60) << "slim";
  QTest::mouseClick(&cross(), Qt::LeftButton);
  settle();
  EXPECT_FALSE(strip().isVisible());
  EXPECT_EQ(bench.canvas().geometry(), before);
}

TEST_F(NoticeOnTheDesktop, ThePictureBelowTheStripIsSharpAndAtItsPosition) {
  const auto scaled = [this](int pixels) { return pixels * bench.canvas().devicePixelRatioF(); };
  open(scan());
  ASSERT_TRUE(strip().isVisible());
  const QPointF corner(scaled(bench.canvas().mapTo(&bench.window(), QPoint()).x()),
                       scaled(bench.canvas().mapTo(&bench.window(), QPoint()).y()));
  const QImage window = bench.grabWindow();
  int wrong = 0;
  for (int y = 0; y < 250; ++y) {
    const int row = static_cast<int>(std::lround(corner.y())) - bench.view().ScrollTop() + 1 + y;
    const int column = static_cast<int>(std::lround(corner.x())) - bench.view().ScrollLeft() + 1 + 200;
    if (qRed(window.pixel(column, row)) != y) ++wrong;
  }
  EXPECT_EQ(wrong, 0) << "each row of the picture is one row of the screen";

  Point under{-1, -1};
  const auto connection = bench.view().MouseMovePixel.Connect(
      [&under](std::int32_t, std::int32_t, std::int32_t x, std::int32_t y) {
        under = {x, y};
      });
  const QPointF at((50 - bench.view().ScrollLeft() + 1.5) / bench.canvas().devicePixelRatioF(),
                   (70 - bench.view().ScrollTop() + 1.5) / bench.canvas().devicePixelRatioF());
  QMouseEvent move(QEvent::MouseMove, at, bench.canvas().mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                   Qt::NoModifier);
  QApplication::sendEvent(&bench.canvas(), &move);
  EXPECT_EQ(under.X, 50);
  EXPECT_EQ(under.Y, 70);
}

TEST_F(NoticeOnTheDesktop, TheScrollBarsAreBelowItAndReachTheWholePicture) {
  open(scan(2, 3000, 3000));
  const QScrollBar& upright = bench.view().surface().verticalBar();
  ASSERT_TRUE(upright.isVisible());
  EXPECT_EQ(upright.y(), strip().height());
  EXPECT_EQ(upright.geometry().bottom(), bench.canvas().geometry().bottom());
  bench.view().ScrollTop(100000);
  const int shownRows = bench.canvas().deviceSize().height();
  EXPECT_NEAR(bench.view().ScrollTop() + shownRows, 3000 + 2, 1) << "down to the line below the last row";
}

TEST_F(NoticeOnTheDesktop, TakesNoFocusWhenShownOrClicked) {
  bench.canvas().setFocus();
  open(scan());
  EXPECT_TRUE(bench.canvas().hasFocus());
  QTest::mouseClick(&strip(), Qt::LeftButton, {}, QPoint(3, 3));
  EXPECT_TRUE(bench.canvas().hasFocus());
  QTest::mouseClick(&cross(), Qt::LeftButton);
  settle();
  EXPECT_TRUE(bench.canvas().hasFocus());
}

TEST_F(NoticeOnTheDesktop, LeavesEscapeAndTheHotKeysToTheEditor) {
  open(scan());
  bench.canvas().setFocus();
  QTest::keyClick(&bench.canvas(), Qt::Key_Escape);
  EXPECT_TRUE(strip().isVisible()) << "Escape in the picture cancels the current action there";
  bool pressed = false;
  const auto connection = bench.view().NoticeAction.Connect([&pressed] { pressed = true; });
  QTest::keyClick(&bench.canvas(), Qt::Key_Return);
  EXPECT_FALSE(pressed) << "it is no window's default button";
  button().setFocus();
  QTest::keyClick(&button(), Qt::Key_I, Qt::ControlModifier);
  EXPECT_EQ(bench.editor().Image()->GetPixel(0, 0).Red(), 249) << "flipped, with the focus in the strip";
}

TEST_F(NoticeOnTheDesktop, TabMovesFromThePictureToTheButtonAndTheCross) {
  open(scan());
  bench.canvas().setFocus();
  QTest::keyClick(&bench.canvas(), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), &button());
  QTest::keyClick(&button(), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), &cross());
  bench.screenshot("notice-focus");
  QTest::keyClick(&cross(), Qt::Key_Return);
  settle();
  EXPECT_FALSE(strip().isVisible());
  EXPECT_TRUE(bench.canvas().hasFocus());
}

TEST_F(NoticeOnTheDesktop, EscapeInsideTheStripClosesIt) {
  open(scan());
  cross().setFocus();
  QTest::keyClick(&cross(), Qt::Key_Escape);
  settle();
  EXPECT_FALSE(strip().isVisible());
  EXPECT_TRUE(bench.canvas().hasFocus());
}

TEST_F(NoticeOnTheDesktop, IsAccessibleToScreenReaders) {
  open(scan());
  EXPECT_EQ(strip().accessibleName(), text().text());
  EXPECT_EQ(cross().accessibleName(), "Close this notice");
  EXPECT_EQ(button().text(), "Save As...");
}

TEST_F(NoticeOnTheDesktop, ItsButtonSavesACopyAndTheFileKeepsItsPages) {
  const std::string file = scan();
  const std::string before = contents(file);
  open(file);
  const std::string target = path("first.tif");
  whenModalOpens([&](QWidget& dialog) {
    settle();
    auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    name->selectAll();
    QTest::keyClicks(name, QString::fromStdString(target));
    QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save), Qt::LeftButton);
  });
  QTest::mouseClick(&button(), Qt::LeftButton);
  settle();
  EXPECT_EQ(bench.editor().Filename(), target);
  EXPECT_TRUE(QFile::exists(QString::fromStdString(target)));
  EXPECT_EQ(contents(file), before);
  EXPECT_FALSE(strip().isVisible());
}

TEST_F(NoticeOnTheDesktop, ReappearsWithTheFirstStrokeWithoutMovingIt) {
  open(scan());
  QTest::mouseClick(&cross(), Qt::LeftButton);
  settle();
  const double factor = bench.canvas().devicePixelRatioF();
  const auto at = [&](int column, int row) {
    return QPoint(static_cast<int>((column - bench.view().ScrollLeft() + 1) / factor),
                  static_cast<int>((row - bench.view().ScrollTop() + 1) / factor));
  };
  bench.editor().Tool(ipToolRectangle);
  bench.editor().BackColor(0x0000FF);
  const QPoint from = at(100, 60);
  const QPoint to = at(180, 120);
  QTest::mousePress(&bench.canvas(), Qt::LeftButton, {}, from);
  QMouseEvent move(QEvent::MouseMove, QPointF(to), bench.canvas().mapToGlobal(QPointF(to)), Qt::NoButton,
                   Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&bench.canvas(), &move);
  EXPECT_FALSE(strip().isVisible()) << "nothing is changed yet";
  QTest::mouseRelease(&bench.canvas(), Qt::LeftButton, {}, to);
  settle();
  EXPECT_TRUE(strip().isVisible());
  const kestrel::Image& picture = *bench.editor().Image();
  EXPECT_EQ(picture.GetPixel(105, 65).Value(), 0x0000FF);
  EXPECT_EQ(picture.GetPixel(175, 115).Value(), 0x0000FF);
  EXPECT_EQ(picture.GetPixel(105, 55).Red(), 55);
  EXPECT_EQ(picture.GetPixel(105, 125).Red(), 125);
}

TEST_F(NoticeOnTheDesktop, InASmallWindowItWrapsAndElidesToHalfTheHeight) {
  open(scan());
  const int oneLine = strip().height();
  bench.moorage().DockWindows()("dkwMaterials").Visible(false);
  bench.moorage().DockWindows()("dkwZoom").Visible(false);
  bench.window().resize(560, 480);
  settle();
  EXPECT_GT(strip().height(), oneLine) << "two lines, or more";
  EXPECT_EQ(text().toolTip(), "");
  bench.screenshot("notice-narrow");

  bench.window().resize(380, 300);
  settle();
  bench.screenshot("notice-small");
  EXPECT_LE(strip().height(), bench.view().surface().height() / 2);
  EXPECT_TRUE(strip().rect().contains(cross().geometry()));

  std::string tale = bench.view().Notice();
  for (int i = 0; i < 8; ++i) tale += " " + bench.view().Notice();
  bench.view().Notice(tale, "Save As...");
  settle();
  bench.screenshot("notice-long");
  EXPECT_LE(strip().height(), bench.view().surface().height() / 2);
  EXPECT_EQ(text().toolTip().toStdString(), tale);
  bench.window().resize(1100, 760);
  settle();
  EXPECT_EQ(text().toolTip(), "") << "all of it fits again";
  bench.screenshot("notice-long-wide");
}

double luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

TEST_F(NoticeOnTheDesktop, HasContrastInALightAndInADarkTheme) {
  open(scan());
  const auto contrast = [this] {
    const QImage picture = strip().grab().toImage();
    const double face = luminance(picture.pixelColor(2, 2));
    const double words = luminance(text().palette().color(QPalette::WindowText));
    return (std::max(face, words) + 0.05) / (std::min(face, words) + 0.05);
  };
  bench.screenshot("notice-light");
  EXPECT_GT(contrast(), 7.0);
  const Theme dark(darkPalette());
  settle();
  bench.screenshot("notice-dark");
  EXPECT_GT(contrast(), 7.0);
  EXPECT_LT(strip().grab().toImage().pixelColor(2, 2).lightness(), 100);
}

}  // namespace
}  // namespace kestrel::desktop
