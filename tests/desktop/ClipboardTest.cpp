#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include "EditorBench.h"
#include "base/RuntimeError.h"
#include "platform/qt/services/ClipboardPictures.h"
#include "platform/qt/services/QtClipboardPort.h"

namespace kestrel::desktop {
namespace {

QClipboard& clipboard() { return *QGuiApplication::clipboard(); }

TEST(DesktopClipboard, HoldsNoBitmapWhileItHoldsTextOrFiles) {
  qt::QtClipboardPort port;
  clipboard().setText(QStringLiteral("not a picture"));
  EXPECT_FALSE(port.hasBitmap());
  auto* const files = new QMimeData;
  files->setUrls({QUrl::fromLocalFile(QStringLiteral("/pictures/a.png"))});
  clipboard().setMimeData(files);
  EXPECT_FALSE(port.hasBitmap());
  try {
    port.take();
    FAIL() << "Nothing was refused.";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.Number(), 521);
  }
}

TEST(DesktopClipboard, RoundTripsAPictureWithItsAlpha) {
  qt::QtClipboardPort port;
  engine::Bitmap bitmap = engine::Bitmap::filled(3, 2, {10, 20, 30, 40});
  port.offer(bitmap);
  EXPECT_TRUE(port.hasBitmap());
  const engine::Bitmap taken = port.take();
  EXPECT_EQ(taken.width(), 3);
  EXPECT_EQ(taken.height(), 2);
  EXPECT_EQ(taken.at(2, 1), (engine::Pixel{10, 20, 30, 40}));
}

TEST(DesktopClipboard, OffersAPictureAsPngAndAsBitmap) {
  QImage picture(2, 1, QImage::Format_RGBA8888);
  picture.fill(Qt::transparent);
  const qt::PictureMimeData data(picture);
  EXPECT_TRUE(data.hasFormat(QStringLiteral("image/png")));
  EXPECT_TRUE(data.hasFormat(QStringLiteral("image/bmp")));
  EXPECT_FALSE(data.hasText());
  const QImage png = QImage::fromData(data.data(QStringLiteral("image/png")), "PNG");
  EXPECT_EQ(png.pixelColor(0, 0).alpha(), 0);
  const QImage bitmap = QImage::fromData(data.data(QStringLiteral("image/bmp")), "BMP");
  EXPECT_EQ(bitmap.pixelColor(0, 0), QColor(Qt::white));
}

TEST(DesktopClipboard, CopiesAndPastesThroughTheEditor) {
  EditorBench bench;
  const QImage picture = noise(40, 30);
  bench.showPicture(picture);
  bench.editor().Copy();
  EXPECT_TRUE(bench.platform().Clipboard().GetFormat(kClipboardBitmap));
  EXPECT_EQ(clipboard().image().convertToFormat(QImage::Format_RGBA8888), picture);
}

}  // namespace
}  // namespace kestrel::desktop
