// Fonts and styles that change while an editor is shown.

#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QStatusBar>
#include <QStyleFactory>
#include <QToolBar>
#include <QToolButton>
#include <functional>

#include "AccessHost.h"

namespace kestrel::desktop {
namespace {

class Fonts : public AccessHost {
 protected:
  ~Fonts() override {
    QApplication::setFont(before_);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  }

  void SetUp() override {
    AccessHost::SetUp();
    openPicture();
    control().Tool(ipToolZoom);  // shows the zoom bar
    control().SetToolbarStyle(1);
    control().ShowMenuBar(true);
    settle();
  }

  static QFont times(const QFont& font, double factor) {
    QFont larger = font;
    larger.setPointSizeF(factor * font.pointSizeF());
    return larger;
  }

  void expectNothingCutOff(const char* when) {
    for (int round = 0; round < 3; ++round) settle();
    for (QLabel* const label : editor_->findChild<QStatusBar*>()->findChildren<QLabel*>()) {
      if (!label->isVisible() || label->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) continue;
      EXPECT_GE(label->width(), label->sizeHint().width()) << when << ": " << label->text().toStdString();
      EXPECT_GE(label->height(), label->fontMetrics().height()) << when << ": panel";
    }
    for (const QDockWidget* const dock : editor_->findChildren<QDockWidget*>()) {
      EXPECT_TRUE(dock->isVisible()) << when << ": the host's window grows";
      EXPECT_GE(dock->widget()->y(), dock->fontMetrics().height()) << when << ": caption";
      EXPECT_GE(dock->width(), dock->minimumSizeHint().width()) << when;
      EXPECT_GE(dock->height(), dock->minimumSizeHint().height()) << when;
    }
    for (const QToolBar* const bar : editor_->findChildren<QToolBar*>()) {
      for (const QToolButton* const button : bar->findChildren<QToolButton*>()) {
        if (!button->isVisible() || !button->defaultAction()) continue;
        EXPECT_GE(button->width(), button->sizeHint().width())
            << when << ": " << button->text().toStdString();
        EXPECT_GE(button->height(), button->fontMetrics().height()) << when;
      }
    }
    const auto& field = part<QComboBox>("cboZoom");
    for (int i = 0; i < field.count(); ++i) {
      EXPECT_GE(field.lineEdit()->width(), field.fontMetrics().horizontalAdvance(field.itemText(i))) << when;
    }
    EXPECT_GE(field.height(), field.fontMetrics().height()) << when;
    const auto* const menus = editor_->findChild<QMenuBar*>();
    EXPECT_GE(menus->height(), menus->fontMetrics().height()) << when;
  }

 private:
  const QFont before_ = QApplication::font();
};

TEST_F(Fonts, OfTheProgramMayChangeAtRunTime) {
  expectNothingCutOff("at first");
  const int width = part("pnlZoom").width();
  const QFont font = QApplication::font();
  QApplication::setFont(times(font, 2));
  expectNothingCutOff("twice as large");
  EXPECT_GT(part("pnlZoom").width(), width);
  QApplication::setFont(font);
  expectNothingCutOff("as before");
  EXPECT_EQ(part("pnlZoom").width(), width) << "a panel does not keep the width of the larger font";
}

TEST_F(Fonts, OfTheHostsWidgetMayChangeAtRunTime) {
  window_.setFont(times(window_.font(), 1.7));
  expectNothingCutOff("larger");
  ASSERT_EQ(part("pnlZoom").font(), window_.font());
}

TEST_F(Fonts, OfAFloatingDockWindowMayChangeAtRunTime) {
  auto& dock = part<QDockWidget>("dkwMaterials");
  dock.setFloating(true);
  settle();
  const QFont font = QApplication::font();
  QApplication::setFont(times(font, 2));
  settle();
  EXPECT_GE(dock.width(), dock.minimumSizeHint().width());
  EXPECT_GE(dock.height(), dock.minimumSizeHint().height());
}

TEST_F(Fonts, StylesMayChangeAtRunTime) {
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Windows")));
  expectNothingCutOff("another style");
  QApplication::setFont(times(QApplication::font(), 2));
  expectNothingCutOff("another style and font");
}

}  // namespace
}  // namespace kestrel::desktop
