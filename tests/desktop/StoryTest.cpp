#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <cmath>
#include <optional>
#include <vector>

#include "EditorBench.h"
#include "engine/draw/BoxShape.h"
#include "engine/draw/Stroke.h"
#include "engine/imgx/PictureObject.h"
#include "imaging/contract/Formats.h"
#include "platform/qt/core/Pictures.h"

namespace kestrel::desktop {
namespace {

constexpr int kPen = 1;  // the editor draws with the thinnest
constexpr QRgb kEllipseColor = 0xff2a6fdb;
constexpr QRgb kStrokeColor = 0xffc81e1e;

/// A picture like a photograph.
QImage photograph() {
  QImage picture(640, 480, QImage::Format_RGB888);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      picture.setPixelColor(x, y, QColor::fromHsv((200 + y / 4 + x / 40) % 360, 110, 250 - y / 4));
    }
  }
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(255, 236, 170));
  painter.drawEllipse(400, 90, 90, 90);
  painter.setBrush(QColor(60, 70, 50));
  painter.drawPolygon(
      QPolygon({{0, 480}, {0, 400}, {180, 300}, {330, 390}, {480, 320}, {640, 420}, {640, 480}}));
  return picture;
}

/// A picture to paste, transparent towards its lower right corner.
QImage sticker() {
  QImage picture(120, 90, QImage::Format_RGBA8888);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const bool dark = (x / 10 + y / 10) % 2 != 0;
      picture.setPixelColor(x, y, QColor(dark ? 40 : 240, 2 * x, 2 * y, 255 - (x + y) / 2));
    }
  }
  return picture;
}

engine::Pixel pixelOf(QRgb color) {
  return {static_cast<std::uint8_t>(qRed(color)), static_cast<std::uint8_t>(qGreen(color)),
          static_cast<std::uint8_t>(qBlue(color)), 255};
}

Point rounded(engine::PointD at) {
  return {static_cast<std::int32_t>(std::lround(at.X)), static_cast<std::int32_t>(std::lround(at.Y))};
}

engine::PointD centerOf(engine::PointD at) { return {std::floor(at.X) + 0.5, std::floor(at.Y) + 0.5}; }

/// A user with a pointer. The positions reached are recorded, since the display decides which pixels it can
/// reach.
class Story : public testing::Test {
 protected:
  Story() {
    const auto note = [this](std::int32_t, std::int32_t, float x, float y) {
      trail.push_back({static_cast<double>(x) + bench.view().ScrollLeft() - 1,
                       static_cast<double>(y) + bench.view().ScrollTop() - 1});
    };
    notes.push_back(bench.view().MouseDown.Connect(note));
    notes.push_back(bench.view().MouseMove.Connect(note));
    notes.push_back(bench.view().Selected.Connect(
        [this](std::int32_t left, std::int32_t top, std::int32_t width, std::int32_t height) {
          selected = {left, top, width, height};
        }));
  }

  std::string path(const char* name) { return folder.filePath(QLatin1String(name)).toStdString(); }

  QImage shown() { return qt::toImage(bench.editor().Image()->Pixels()); }

  /// Takes a screenshot of the window, and keeps the picture if it has changed.
  void done(const std::string& step) {
    settle();
    bench.screenshot("story-" + step);
    if (stages.empty() || shown() != stages.back()) stages.push_back(shown());
  }

  void press(const char* button) {
    auto* const widget = bench.window().findChild<QToolButton*>(QLatin1String(button));
    ASSERT_NE(widget, nullptr) << button;
    ASSERT_TRUE(widget->isVisible() && widget->isEnabled()) << button;
    QTest::mouseClick(widget, Qt::LeftButton);
    settle();
  }

  /// The position of a picture pixel on the canvas at zoom 1.
  QPoint at(int column, int row) {
    const double factor = bench.canvas().devicePixelRatioF();
    return {static_cast<int>((column - bench.view().ScrollLeft() + 1) / factor),
            static_cast<int>((row - bench.view().ScrollTop() + 1) / factor)};
  }

  /// Drags through pixels of the picture. The positions reached are in `trail`.
  void drag(const std::vector<QPoint>& pixels) {
    std::vector<QPoint> points;
    for (const QPoint& pixel : pixels) points.push_back(at(pixel.x(), pixel.y()));
    trail.clear();
    QTest::mousePress(&bench.canvas(), Qt::LeftButton, {}, points.front());
    for (std::size_t i = 1; i < points.size(); ++i) {
      QMouseEvent move(QEvent::MouseMove, QPointF(points[i]), bench.canvas().mapToGlobal(QPointF(points[i])),
                       Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(&bench.canvas(), &move);
    }
    QTest::mouseRelease(&bench.canvas(), Qt::LeftButton, {}, points.back());
  }

  void chooseBackground(QRgb color) {
    auto* const swatch = bench.window().findChild<QPushButton*>(QStringLiteral("btnColors_1"));
    QTest::mouseClick(swatch, Qt::LeftButton);
    QWidget* const list = QApplication::activePopupWidget();
    ASSERT_NE(list, nullptr);
    for (QToolButton* entry : list->findChildren<QToolButton*>()) {
      if (entry->accessibleName() != QColor(color).name()) continue;
      QTest::mouseClick(entry, Qt::LeftButton);
      break;
    }
    settle();
    ASSERT_EQ(bench.editor().BackColor(), qt::fromColor(QColor(color)));
  }

  void open(const std::string& file) {
    whenModalOpens([&](QWidget& dialog) {
      settle();
      QTest::keyClicks(dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit")),
                       QString::fromStdString(file));
      QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open),
                        Qt::LeftButton);
    });
    press("btnFileOpen");
    ASSERT_EQ(bench.editor().Filename(), file);
  }

  void rotateLeftBy30() {
    bool found = false;
    whenModalOpens([&](QWidget& dialog) {
      settle();
      auto* const left = dialog.findChild<QRadioButton*>(QStringLiteral("optDirection_0"));
      auto* const degrees = dialog.findChild<QLineEdit*>(QStringLiteral("txtDegrees"));
      auto* const ok = dialog.findChild<QPushButton*>(QStringLiteral("cmdAction_0"));
      found = left && degrees && ok;
      if (!found) return void(dialog.close());
      QTest::mouseClick(left, Qt::LeftButton, {}, QPoint(8, left->height() / 2));
      QTest::mouseClick(degrees, Qt::LeftButton);
      QTest::keyClick(degrees, Qt::Key_A, Qt::ControlModifier);
      QTest::keyClicks(degrees, QStringLiteral("30"));
      settle();
      EXPECT_TRUE(left->isChecked());
      EXPECT_EQ(degrees->text(), "30");
      writeScreenshot(dialog, "story-06-rotate-dialog");
      QTest::mouseClick(ok, Qt::LeftButton);
    });
    press("btnRotateFree");
    ASSERT_TRUE(found);
  }

  EditorBench bench;
  QTemporaryDir folder;
  std::vector<Connection> notes;
  std::vector<engine::PointD> trail;  ///< in picture pixels
  Rectangle selected;
  std::vector<QImage> stages;
};

/// The same edits done directly with the engine, without a view.
class Replay {
 public:
  Replay(Platform& platform, const std::string& file)
      : picture_(platform.CreateImgX()), pasted_(platform.CreateImgX()) {
    picture_->Document().FromFile(file);
  }

  QImage picture() { return qt::toImage(picture_->Image()->Pixels()); }

  void crop(const Rectangle& area) { picture_->Effects().Crop(area.Left, area.Top, area.Width, area.Height); }

  void ellipse(engine::PointD from, engine::PointD to, QRgb color) {
    engine::Bitmap bitmap = engine::bitmapOf(*picture_->Image());
    const Rectangle whole{0, 0, bitmap.width(), bitmap.height()};
    engine::paint(bitmap.writable(), whole,
                  engine::BoxShape::ellipse(rounded(from), rounded(to), std::nullopt), pixelOf(color));
    picture_->Document().FromPicture(engine::PictureObject(bitmap));
  }

  void stroke(const std::vector<engine::PointD>& trail, QRgb color) {
    engine::Bitmap bitmap = engine::bitmapOf(*picture_->Image());
    engine::Stroke stroke(pixelOf(color), kPen, {0, 0, bitmap.width(), bitmap.height()});
    for (const engine::PointD& sample : trail) {
      stroke.add(centerOf(sample));
      stroke.paint(bitmap.writable());
    }
    stroke.finish();
    stroke.paint(bitmap.writable());
    picture_->Document().FromPicture(engine::PictureObject(bitmap));
  }

  void paste(const QImage& image, const Rectangle& where) {
    pasted_->Document().FromPicture(qt::ImagePicture(image));
    picture_->Draw().Image(*pasted_->Image(), where.Left, where.Top, nullptr, 1.0F, true);
  }

  void rotate(float clockwise) {
    // The settings name no background material, so nothing fills the corners.
    const Colour corners(kNoColor);
    picture_->Effects().Rotate(clockwise, &corners);
  }

 private:
  std::shared_ptr<ImgX> picture_;
  std::shared_ptr<ImgX> pasted_;
};

TEST_F(Story, AnEditedAndSavedPhotographEqualsTheEnginesResult) {
  const std::string file = path("photograph.jpg");
  ASSERT_TRUE(photograph().save(QString::fromStdString(file), "JPG", 92));
  ASSERT_NO_FATAL_FAILURE(open(file));
  done("01-opened");
  Replay replay(bench.platform(), file);
  EXPECT_EQ(shown(), replay.picture());

  press("btnImageCrop");
  drag({{60, 40}, {300, 200}, {580, 420}});
  done("02-cropped");
  EXPECT_NEAR(selected.Width, 520, 1);
  EXPECT_NEAR(selected.Height, 380, 1);
  replay.crop(selected);
  EXPECT_EQ(shown(), replay.picture());

  chooseBackground(kEllipseColor);
  press("btnDrawEllipse");
  drag({{40, 50}, {120, 90}, {220, 170}});
  done("03-ellipse");
  replay.ellipse(trail.front(), trail.back(), kEllipseColor);
  EXPECT_EQ(shown(), replay.picture());

  chooseBackground(kStrokeColor);
  press("btnDrawFreehand");
  drag({{250, 300}, {280, 250}, {320, 310}, {360, 240}, {410, 320}, {470, 260}, {430, 200}});
  done("04-stroke");
  replay.stroke(trail, kStrokeColor);
  EXPECT_EQ(shown(), replay.picture());

  QGuiApplication::clipboard()->setImage(sticker());
  QTest::keyClick(&bench.canvas(), Qt::Key_V, Qt::ControlModifier);
  settle();
  const QPoint floating(bench.view().SelectionLeft() + 50, bench.view().SelectionTop() + 40);
  drag({floating, {200, 150}, {350, 120}});
  settle();
  done("05a-floating");
  EXPECT_EQ(stages.size(), 4U) << "The floating picture is not part of the picture yet.";
  EXPECT_NEAR(selected.Left, 300, 1);
  EXPECT_NEAR(selected.Top, 80, 1);
  QTest::mouseClick(&bench.canvas(), Qt::LeftButton, {}, at(100, 300));
  done("05b-pasted");
  replay.paste(sticker(), selected);
  EXPECT_EQ(shown(), replay.picture());

  rotateLeftBy30();
  done("07-rotated");
  replay.rotate(330);
  EXPECT_EQ(shown(), replay.picture());
  EXPECT_EQ(shown().pixelColor(0, 0).alpha(), 0);

  // Open, crop, two shapes, a paste, a rotation: each step differs from the one before.
  ASSERT_EQ(stages.size(), 6U);
  const std::vector<QImage> recorded = stages;
  for (std::size_t left = recorded.size() - 1; left > 0; --left) {
    QTest::keyClick(&bench.canvas(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(shown(), recorded[left - 1]) << "after undoing step " << left;
  }
  QTest::keyClick(&bench.canvas(), Qt::Key_Z, Qt::ControlModifier);  // nothing is left to undo
  done("08-undone");
  EXPECT_EQ(shown(), recorded.front());

  for (std::size_t step = 1; step < recorded.size(); ++step) {
    press("btnEditRedo");
    EXPECT_EQ(shown(), recorded[step]) << "after redoing step " << step;
  }
  done("09-redone");
  EXPECT_EQ(shown(), recorded.back());

  press("btnDrawZoom");
  QTest::mouseClick(&bench.canvas(), Qt::LeftButton, {}, at(300, 250));
  EXPECT_EQ(bench.view().Zoom(), 2.0);
  done("10-zoomed-in");
  press("btnZoomOut");
  EXPECT_EQ(bench.view().Zoom(), 1.0);
  press("btnZoomOut");
  EXPECT_NEAR(bench.view().Zoom(), 0.9, 1e-6);
  done("11-zoomed-out");

  // A photograph stays in its format when the user saves it; a host may ask for another one.
  const std::string saved = path("photograph.png");
  bench.editor().ImageControl().Writer().ToFile(saved, format::kPng);
  done("12-saved");
  QImage written;
  ASSERT_TRUE(written.load(QString::fromStdString(saved), "PNG"));
  EXPECT_EQ(written.convertToFormat(QImage::Format_RGBA8888), replay.picture());
}

}  // namespace
}  // namespace kestrel::desktop
