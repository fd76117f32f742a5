// The dialogs of the drop shadows, of Flatten Transparency and of Paste Special, through real widgets: by
// keys alone, by the mouse alone, and their looks.

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QTest>
#include <QToolButton>
#include <QWindow>
#include <algorithm>
#include <set>

#include "EditorBench.h"
#include "Themes.h"
#include "imaging/contract/Clipboard.h"
#include "platform/qt/controls/ColorPickerWidget.h"
#include "platform/qt/view/ImageSurface.h"
#include "platform/qt/view/PreviewWidget.h"
#include "settings/modProcessing.h"

namespace kestrel::desktop {
namespace {

constexpr QRgb kGround = 0xFFFFFFFF;
constexpr QRgb kSubject = 0xFFC81E1E;
constexpr OLE_COLOR kListedColor = 0x00DB6F2A;  // a color of the palette, 2A6FDB

/// A red disc on white.
QImage disc() {
  QImage picture(160, 120, QImage::Format_RGBA8888);
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const int dx = x - 80, dy = y - 60;
      picture.setPixel(x, y, dx * dx + dy * dy < 40 * 40 ? kSubject : kGround);
    }
  }
  return picture;
}

/// A dialog in its window. Keys go where the window system sends them.
class Dialog {
 public:
  explicit Dialog(QWidget& window) : window_(window) {
    QApplication::setActiveWindow(&window_);
    settle();
  }

  QWidget& window() { return window_; }
  template <typename T>
  T& part(const char* name) {
    T* const found = window_.findChild<T*>(QLatin1String(name));
    EXPECT_NE(found, nullptr) << name;
    return *found;
  }
  QLineEdit& field(int index) {
    return part<QLineEdit>(QByteArray("txtField_").append(QByteArray::number(index)).constData());
  }
  qt::ColorPickerWidget& picker(const char* name) { return part<qt::ColorPickerWidget>(name); }
  QString focus() { return window_.focusWidget() ? window_.focusWidget()->objectName() : QString(); }
  static QMenu* palette() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    pressKey(window_, key, modifiers);
    settle();
  }
  void type(const char* text) {
    for (const char* at = text; *at != '\0'; ++at) QTest::keyClick(window_.windowHandle(), *at);
    settle();
  }
  /// A click on a widget, as the window system sends it to the widget's window.
  static void click(QWidget& widget) {
    // The empty part of a check box does not count.
    constexpr int kBox = 8;
    const QPoint middle = widget.rect().center();
    const QPoint at =
        widget.mapTo(widget.window(), qobject_cast<QCheckBox*>(&widget) ? QPoint(kBox, middle.y()) : middle);
    QTest::mouseClick(widget.window()->windowHandle(), Qt::LeftButton, {}, at);
    settle();
  }
  void clickButton(const char* name) { click(part<QAbstractButton>(name)); }
  /// Chooses a color in the open palette by the mouse.
  static void clickColor(const char* name) {
    for (QToolButton* const swatch : palette()->findChildren<QToolButton*>()) {
      if (swatch->toolTip() == QLatin1String(name)) return click(*swatch);
    }
    ADD_FAILURE() << name << " is not in the palette";
  }
  /// The color in the middle of the right pane.
  QColor resultAt(int x, int y) {
    auto* const pane = window_.findChild<qt::PreviewWidget*>()->findChildren<qt::ImageSurface*>().at(1);
    const QImage seen = pane->canvas().grab().toImage();
    return seen.pixelColor(seen.width() / 2 + x, seen.height() / 2 + y);
  }

 private:
  QWidget& window_;
};

class ColorDialogs : public testing::Test {
 protected:
  void SetUp() override {
    bench.showPicture(disc());
    options().DropShadowBlur(64);
  }
  static Options& options() { return *modProcessing::GetOptions(); }
  /// Opens a dialog and runs the user's actions in it.
  template <typename Open>
  auto show(Open open, const std::function<void(Dialog&)>& doing) {
    bool used = false;
    whenModalOpens([&](QWidget& window) {
      Dialog dialog(window);
      doing(dialog);
      used = true;
      if (window.isVisible()) window.close();
    });
    const auto answer = open();
    EXPECT_TRUE(used);
    return answer;
  }
  bool showPlain(const std::function<void(Dialog&)>& doing) {
    return show([&] { return bench.editor().ShowDropShadowDialog(); }, doing);
  }
  bool showContoured(const std::function<void(Dialog&)>& doing) {
    return show([&] { return bench.editor().ShowMaskedDropShadowDialog(); }, doing);
  }
  bool showFlatten(const std::function<void(Dialog&)>& doing) {
    return show([&] { return bench.editor().ShowFlattenAlphaDialog(); }, doing);
  }
  bool showPasteSpecial(const std::function<void(Dialog&)>& doing) {
    QApplication::clipboard()->setImage(disc());
    return show(
        [&] {
          bench.moorage().CommandClick(bench.command("btnEditPasteSpecial"));
          return bench.command("btnEditPaste").Checked();
        },
        doing);
  }
  /// Runs the actions in each of the four windows.
  void inEach(const std::function<void(Dialog&, const char*)>& doing) {
    showPlain([&](Dialog& dialog) { doing(dialog, "drop-shadow"); });
    showContoured([&](Dialog& dialog) { doing(dialog, "contoured-drop-shadow"); });
    showFlatten([&](Dialog& dialog) { doing(dialog, "flatten-transparency"); });
    showPasteSpecial([&](Dialog& dialog) { doing(dialog, "paste-special"); });
  }

  EditorBench bench;
};

// -- By keys alone ----------------------------------------------------------------------------------------

TEST_F(ColorDialogs, TheDropShadowIsSetByKeysAlone) {
  EXPECT_TRUE(showPlain([](Dialog& dialog) {
    EXPECT_EQ(dialog.focus(), "txtField_0");
    dialog.type("1x2-.");
    EXPECT_EQ(dialog.field(0).text(), "12") << "digits only, instead of the selected text";
    dialog.press(Qt::Key_Tab);
    dialog.type("7");
    dialog.press(Qt::Key_Tab);
    dialog.type("96");
    dialog.press(Qt::Key_Tab);
    EXPECT_EQ(dialog.focus(), "cpkColor_0");
    dialog.press(Qt::Key_Space);
    ASSERT_NE(Dialog::palette(), nullptr);
    dialog.press(Qt::Key_Right);  // from black, the current color, to the next gray
    dialog.press(Qt::Key_Return);
    EXPECT_EQ(Dialog::palette(), nullptr);
    EXPECT_EQ(dialog.picker("cpkColor_0").color(), QColor(0x40, 0x40, 0x40));
    dialog.press(Qt::Key_Tab);
    dialog.type("200");
    dialog.press(Qt::Key_Tab);
    EXPECT_EQ(dialog.focus(), "chkUseOriginalImage") << "the hidden mask is skipped";
    dialog.press(Qt::Key_Space);
    EXPECT_TRUE(dialog.part<QCheckBox>("chkUseOriginalImage").isChecked());
    dialog.press(Qt::Key_Return);
    EXPECT_FALSE(dialog.window().isVisible());
  }));
  EXPECT_EQ(options().DropShadowHorizontalOffset(), 12);
  EXPECT_EQ(options().DropShadowVerticalOffset(), 7);
  EXPECT_EQ(options().DropShadowBlur(), 96);
  EXPECT_EQ(options().DropShadowColor(), 0x00404040);
  EXPECT_EQ(options().DropShadowOpacity(), 200);
  EXPECT_GT(bench.editor().Image()->Width(), 160);
}

TEST_F(ColorDialogs, TheMaskIsSetByKeysAlone) {
  EXPECT_TRUE(showContoured([](Dialog& dialog) {
    EXPECT_TRUE(dialog.picker("cpkColor_1").enhancedSelected());
    dialog.press(Qt::Key_M, Qt::AltModifier);
    EXPECT_EQ(dialog.focus(), "cpkColor_1");
    ASSERT_TRUE(QTest::qWaitFor([] { return Dialog::palette() != nullptr; })) << "the key presses the button";
    dialog.press(Qt::Key_Down);  // from Automatic to the first color
    dialog.press(Qt::Key_Down);  // to the next row
    dialog.press(Qt::Key_Return);
    EXPECT_FALSE(dialog.picker("cpkColor_1").enhancedSelected());
    EXPECT_EQ(dialog.picker("cpkColor_1").color(), QColor(0x7f, 0x1d, 0x1d));
    dialog.press(Qt::Key_Space);
    dialog.press(Qt::Key_Up);
    dialog.press(Qt::Key_Up);
    dialog.press(Qt::Key_Return);
    EXPECT_TRUE(dialog.picker("cpkColor_1").enhancedSelected());
    dialog.press(Qt::Key_Return);
  }));
  EXPECT_TRUE(options().DropShadowAutomaticMask());
}

TEST_F(ColorDialogs, FlattenAndPasteSpecialAreSetByKeysAlone) {
  options().FlattenAlphaColor(0);
  const auto next = [](Dialog& dialog) {
    EXPECT_EQ(dialog.focus(), "cpkColor");
    dialog.press(Qt::Key_Down);
    dialog.press(Qt::Key_Right);
    dialog.press(Qt::Key_Return);
    EXPECT_TRUE(dialog.window().isVisible()) << "Return chose the color only";
    dialog.press(Qt::Key_Return);
  };
  EXPECT_TRUE(showFlatten(next));
  EXPECT_EQ(options().FlattenAlphaColor(), 0x00404040);
  options().PasteSpecialMaskColor(0);
  EXPECT_TRUE(showPasteSpecial(next));
  EXPECT_EQ(options().PasteSpecialMaskColor(), 0x00404040);
  bench.editor().Cancel();
}

TEST_F(ColorDialogs, EscapeClosesThePaletteFirstAndThenTheDialog) {
  options().FlattenAlphaColor(0x00010203);
  EXPECT_FALSE(showFlatten([](Dialog& dialog) {
    dialog.press(Qt::Key_Space);
    ASSERT_NE(Dialog::palette(), nullptr);
    dialog.press(Qt::Key_Escape);
    EXPECT_EQ(Dialog::palette(), nullptr);
    EXPECT_TRUE(dialog.window().isVisible());
    dialog.press(Qt::Key_Escape);
    EXPECT_FALSE(dialog.window().isVisible());
  }));
  EXPECT_EQ(options().FlattenAlphaColor(), 0x00010203);
}

TEST_F(ColorDialogs, EveryAccessKeyLeadsToOneControl) {
  inEach([](Dialog& dialog, const char* name) {
    std::set<QString> keys;
    for (const QWidget* const widget : dialog.window().findChildren<QWidget*>()) {
      const auto* const label = qobject_cast<const QLabel*>(widget);
      const auto* const button = qobject_cast<const QAbstractButton*>(widget);
      if (!widget->isVisible() || (!label && !button)) continue;
      const QString key = QKeySequence::mnemonic(label ? label->text() : button->text()).toString();
      if (key.isEmpty()) continue;
      EXPECT_TRUE(keys.insert(key).second) << name << ": " << key.toStdString();
    }
    EXPECT_FALSE(keys.empty()) << name;
  });
  showPlain([](Dialog& dialog) {
    const std::pair<Qt::Key, const char*> keys[] = {{Qt::Key_V, "txtField_1"},
                                                    {Qt::Key_B, "txtField_2"},
                                                    {Qt::Key_O, "txtField_3"},
                                                    {Qt::Key_H, "txtField_0"}};
    for (const auto& [key, field] : keys) {
      dialog.press(key, Qt::AltModifier);
      EXPECT_EQ(dialog.focus(), QLatin1String(field));
    }
    dialog.press(Qt::Key_U, Qt::AltModifier);
    auto& box = dialog.part<QCheckBox>("chkUseOriginalImage");
    EXPECT_EQ(box.text(), "&Use Original Image");
    EXPECT_TRUE(QTest::qWaitFor([&] { return box.isChecked(); }));
  });
}

TEST_F(ColorDialogs, NameTheirControlsForScreenReaders) {
  inEach([](Dialog& dialog, const char* name) {
    for (QWidget* const widget : dialog.window().findChildren<QWidget*>()) {
      if (!widget->isVisible() || (widget->focusPolicy() & Qt::TabFocus) == 0) continue;
      QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(widget);
      ASSERT_NE(face, nullptr);
      EXPECT_FALSE(face->text(QAccessible::Name).isEmpty())
          << name << ' ' << widget->objectName().toStdString();
    }
  });
}

TEST_F(ColorDialogs, AnOpacityOf256IsReportedWhileItIsTyped) {
  QString title;
  EXPECT_FALSE(showPlain([&](Dialog& dialog) {
    dialog.press(Qt::Key_O, Qt::AltModifier);
    dialog.type("25");
    whenModalOpens([&](QWidget& box) {
      title = box.windowTitle();
      box.close();
    });
    dialog.type("6");
    EXPECT_TRUE(dialog.window().isVisible());
    EXPECT_EQ(dialog.field(3).text(), "256");
    dialog.press(Qt::Key_Backspace);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the next change clears the hourglass";
    dialog.press(Qt::Key_Escape);
  }));
  EXPECT_EQ(title, "Application Error");
}

/// Counts the paints of a box that show a text.
class PaintsOf final : public QObject {
 public:
  PaintsOf(QLineEdit& edit, QString text) : edit_(edit), text_(std::move(text)) {
    edit_.installEventFilter(this);
  }
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint && edit_.text() == text_) ++count;
    return false;
  }
  int count = 0;

 private:
  QLineEdit& edit_;
  QString text_;
};

TEST_F(ColorDialogs, ATypedDigitIsShownBeforeItsPreviewIsComputed) {
  showPlain([](Dialog& dialog) {
    QLineEdit& box = dialog.field(0);
    PaintsOf paints(box, QStringLiteral("4"));
    int paintsAtChange = -1;
    // The dialog has connected its handler, which computes the preview, before this one.
    QObject::connect(&box, &QLineEdit::textChanged, &paints, [&] { paintsAtChange = paints.count; });
    dialog.type("4");
    EXPECT_EQ(paintsAtChange, 1);
  });
}

// -- By the mouse alone -----------------------------------------------------------------------------------

TEST_F(ColorDialogs, TheContouredShadowIsSetByTheMouseAlone) {
  options().DropShadowAutomaticMask(false);
  EXPECT_TRUE(showContoured([](Dialog& dialog) {
    dialog.clickButton("chkUseOriginalImage");
    dialog.clickButton("cpkColor_0");
    ASSERT_NE(Dialog::palette(), nullptr);
    Dialog::clickColor("#2a6fdb");
    EXPECT_EQ(Dialog::palette(), nullptr);
    dialog.clickButton("cpkColor_1");
    Dialog::clickColor("#ffffff");
    EXPECT_EQ(dialog.resultAt(0, 0).rgb(), kSubject) << "the subject stays";
    dialog.clickButton("cmdAction_0");
    EXPECT_FALSE(dialog.window().isVisible());
  }));
  EXPECT_EQ(options().DropShadowColor(), kListedColor);
  EXPECT_EQ(options().DropShadowMaskColor(), 0x00FFFFFF);
  EXPECT_FALSE(options().DropShadowAutomaticMask());
}

TEST_F(ColorDialogs, FlattenAndPasteSpecialAreSetByTheMouseAlone) {
  const auto choose = [](Dialog& dialog) {
    dialog.clickButton("cpkColor");
    ASSERT_NE(Dialog::palette(), nullptr);
    Dialog::clickColor("#2a6fdb");
    dialog.clickButton("cmdAction_0");
  };
  EXPECT_TRUE(showFlatten(choose));
  EXPECT_EQ(options().FlattenAlphaColor(), kListedColor);
  EXPECT_TRUE(showPasteSpecial(choose));
  EXPECT_EQ(options().PasteSpecialMaskColor(), kListedColor);
  bench.editor().Cancel();
  EXPECT_FALSE(showPasteSpecial([](Dialog& dialog) { dialog.clickButton("cmdAction_1"); }));
}

// -- Looks ------------------------------------------------------------------------------------------------

/// Every visible control has the room that its text needs, inside its parent.
void expectNothingCutOff(QWidget& window, const std::string& name) {
  for (const QWidget* const widget : window.findChildren<QWidget*>()) {
    const bool hasText = qobject_cast<const QLabel*>(widget) || qobject_cast<const QAbstractButton*>(widget);
    if (!widget->isVisible() || !hasText || widget->objectName().isEmpty()) continue;
    if (widget->objectName().startsWith(QStringLiteral("qt_"))) continue;
    const QSize needed = widget->sizeHint();
    const std::string what = name + ' ' + widget->objectName().toStdString();
    EXPECT_GE(widget->width(), needed.width()) << what;
    EXPECT_GE(widget->height(), needed.height()) << what;
    EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry())) << what;
  }
}

/// Makes each text 40 percent longer, as German ones are.
void lengthen(QWidget& window) {
  const auto longer = [](const QString& text) {
    return text + QString(qMax<qsizetype>(2, text.size() * 4 / 10), u'n');
  };
  for (auto* const label : window.findChildren<QLabel*>()) label->setText(longer(label->text()));
  for (auto* const button : window.findChildren<QAbstractButton*>()) {
    if (!button->text().isEmpty()) button->setText(longer(button->text()));
  }
}

TEST_F(ColorDialogs, AreShownInLightAndDarkWithNothingCutOff) {
  const auto look = [](const std::string& theme) {
    return [theme](Dialog& dialog, const char* name) {
      if (auto* const box = dialog.window().findChild<QCheckBox*>(QStringLiteral("chkUseOriginalImage"))) {
        box->setChecked(true);
      }
      settle();
      expectNothingCutOff(dialog.window(), name);
      writeScreenshot(dialog.window(), name + theme);
    };
  };
  inEach(look("-light"));
  const Theme dark(darkPalette());
  inEach(look("-dark"));
}

TEST_F(ColorDialogs, ShowLongerTextsAndAFontTwiceAsLarge) {
  inEach([](Dialog& dialog, const char* name) {
    lengthen(dialog.window());
    settle();
    expectNothingCutOff(dialog.window(), std::string(name) + " lengthened");
    writeScreenshot(dialog.window(), std::string(name) + "-long");
  });
  const QFont before = QApplication::font();
  QFont twice = before;
  twice.setPointSizeF(2 * before.pointSizeF());
  QApplication::setFont(twice);
  inEach([](Dialog& dialog, const char* name) {
    expectNothingCutOff(dialog.window(), std::string(name) + " with a large font");
    writeScreenshot(dialog.window(), std::string(name) + "-large");
    lengthen(dialog.window());
    settle();
    expectNothingCutOff(dialog.window(), std::string(name) + " with a large font, lengthened");
    writeScreenshot(dialog.window(), std::string(name) + "-large-long");
  });
  QApplication::setFont(before);
}

TEST_F(ColorDialogs, ThePaletteShowsTheFocusOnAColor) {
  showFlatten([](Dialog& dialog) {
    dialog.clickButton("cpkColor");
    ASSERT_NE(Dialog::palette(), nullptr);
    QTest::keyClick(Dialog::palette()->windowHandle(), Qt::Key_Down);
    settle();
    auto* const swatch = qobject_cast<QToolButton*>(QApplication::focusWidget());
    ASSERT_NE(swatch, nullptr);
    const QImage seen = swatch->grab().toImage();
    const QRgb frame = swatch->palette().color(QPalette::Highlight).rgb();
    const QPoint middle = seen.rect().center();
    EXPECT_EQ(seen.pixel(1, middle.y()), frame);
    EXPECT_EQ(seen.pixel(middle.x(), 1), frame);
    EXPECT_EQ(seen.pixelColor(middle).name(), swatch->accessibleName());
    writeScreenshot(*Dialog::palette(), "palette-focus");
    dialog.press(Qt::Key_Escape);
  });
}

TEST_F(ColorDialogs, TheRecentColorsAreBelowTheColumnsOfThePalette) {
  showFlatten([](Dialog& dialog) {
    dialog.clickButton("cpkColor");
    Dialog::clickColor("#2a6fdb");
    dialog.clickButton("cpkColor");
    const QList<QToolButton*> swatches = Dialog::palette()->findChildren<QToolButton*>();
    QToolButton* const recent = *std::find_if(swatches.begin(), swatches.end(), [&](QToolButton* swatch) {
      return swatch->parentWidget() != swatches.first()->parentWidget();
    });
    ASSERT_EQ(recent->accessibleName(), "#2a6fdb");
    EXPECT_EQ(recent->mapTo(Dialog::palette(), QPoint()).x(),
              swatches.first()->mapTo(Dialog::palette(), QPoint()).x());
    writeScreenshot(*Dialog::palette(), "palette-recent");
    dialog.press(Qt::Key_Escape);
  });
}

TEST_F(ColorDialogs, ThePaletteIsShownWithItsChoice) {
  showContoured([](Dialog& dialog) {
    dialog.clickButton("cpkColor_1");
    ASSERT_NE(Dialog::palette(), nullptr);
    writeScreenshot(*Dialog::palette(), "palette-automatic");
    dialog.press(Qt::Key_Escape);
    dialog.clickButton("cpkColor_0");
    writeScreenshot(*Dialog::palette(), "palette-color");
    dialog.press(Qt::Key_Escape);
  });
}

}  // namespace
}  // namespace kestrel::desktop
