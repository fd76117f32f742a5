// Hosts that are Qt programs: the library joins their application object.

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

#include "Host.h"

namespace kestrel::ctest {
namespace {

using testing::StartsWith;

class CInQt : public Host {
 protected:
  CInQt() : Host(KESTREL_DESKTOP) {}

  struct Embedded {
    Object control;
    QPointer<QWidget> widget;
  };
  static Embedded embed(QWidget* parent, const char* name = "ImageProcessingCtl") {
    Embedded made;
    void* widget = nullptr;
    EXPECT_EQ(Outcome(kestrel_embed(name, parent, &made.control.handle, &widget, nullptr)), "");
    made.widget = static_cast<QWidget*>(widget);
    return made;
  }
};

TEST_F(CInQt, TheApplicationObjectIsTheHosts) {
  const QCoreApplication* const application = QCoreApplication::instance();
  const Object processing = started();
  EXPECT_EQ(QCoreApplication::instance(), application);
  EXPECT_EQ(Outcome(kestrel_stop()), "");
  EXPECT_EQ(QCoreApplication::instance(), application);
}

TEST_F(CInQt, AControlInALayout) {
  QWidget window;
  auto* const layout = new QVBoxLayout(&window);
  const Embedded editor = embed(&window);
  ASSERT_FALSE(editor.widget.isNull());
  EXPECT_EQ(editor.widget->parentWidget(), &window);
  EXPECT_FALSE(editor.widget->isVisible());
  layout->addWidget(editor.widget);
  EXPECT_EQ(Call(editor.control, "Initialize"), "");
  window.resize(800, 600);
  window.show();
  EXPECT_TRUE(editor.widget->isVisible());
  EXPECT_EQ(Call(editor.control, "OpenImage", {Text(png().c_str())}), "");
  EXPECT_EQ(GetNumber(GetObject(editor.control, "Image"), "Width"), 40);
}

TEST_F(CInQt, AControlWhoseWindowIsGone) {
  auto window = std::make_unique<QWidget>();
  const Embedded editor = embed(window.get());
  const Embedded browser = embed(window.get(), "ImageBrowserCtl");
  const Object commands = GetObject(editor.control, "Commands");
  window.reset();
  EXPECT_TRUE(editor.widget.isNull());
  Result value;
  EXPECT_THAT(Outcome(kestrel_get(editor.control, "Filename", value.place())), StartsWith("91 "));
  EXPECT_THAT(Outcome(kestrel_get(browser.control, "Path", value.place())), StartsWith("91 "));
  EXPECT_THAT(Outcome(kestrel_get(commands, "Count", value.place())), StartsWith("91 "));
  EXPECT_THAT(Outcome(kestrel_unembed(editor.control)), StartsWith("91 "));
}

TEST_F(CInQt, AHandlerDestroysTheControl) {
  QWidget window;
  const Embedded editor = embed(&window);
  EXPECT_EQ(Call(editor.control, "Initialize"), "");
  Handler handler([&](kestrel_value*, std::int32_t) {
    EXPECT_EQ(Outcome(kestrel_unembed(editor.control)), "");
    return KESTREL_OK;
  });
  ASSERT_EQ(handler.connect(editor.control, "ImageOpen"), "");
  Call(editor.control, "OpenImage", {Text(png().c_str())});
  EXPECT_EQ(handler.calls, 1);
  EXPECT_TRUE(editor.widget.isNull());
  EXPECT_EQ(handler.disconnect(), KESTREL_OK);
  EXPECT_EQ(handler.releases, 1);
}

TEST_F(CInQt, ReleasingTheHandleKeepsTheWidget) {
  QWidget window;
  Embedded editor = embed(&window);
  editor.control.release();
  EXPECT_FALSE(editor.widget.isNull());
}

TEST_F(CInQt, WidgetsComeAndGo) {
  const auto widgetsAfterOne = [] {
    {
      QWidget window;
      const Embedded editor = embed(&window);
      EXPECT_EQ(Call(editor.control, "Initialize"), "");
    }
    EXPECT_EQ(Outcome(kestrel_process_events(0)), "");
    return QApplication::allWidgets().size();
  };
  const auto count = widgetsAfterOne();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(widgetsAfterOne(), count);
}

TEST_F(CInQt, ARunEndsWithTheWindowOfTheHost) {
  QWidget window;
  window.show();
  QTimer::singleShot(0, &window, &QWidget::close);
  std::int32_t reason = -1;
  EXPECT_EQ(Outcome(kestrel_run(nullptr, -1, &reason)), "");
  EXPECT_EQ(reason, KESTREL_RUN_CLOSED);
}

TEST_F(CInQt, ARunEndsWithTheUsersClosingTheEditor) {
  const Object processing = started();
  EXPECT_EQ(Call(processing, "Show"), "");
  QTimer::singleShot(0, qApp, [] {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->isVisible()) window->close();
    }
  });
  std::int32_t reason = -1;
  EXPECT_EQ(Outcome(kestrel_run(processing, -1, &reason)), "");
  EXPECT_EQ(reason, KESTREL_RUN_CLOSED);
  EXPECT_FALSE(GetBoolean(processing, "Visible"));
}

TEST_F(CInQt, TheHostsOwnLoopEndsTheRun) {
  const Object processing = started();
  EXPECT_EQ(Call(processing, "Show"), "");
  std::int32_t reason = -1;
  QTimer::singleShot(0, qApp, [&] {
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    EXPECT_EQ(Outcome(kestrel_run(processing, -1, &reason)), "");
  });
  QApplication::exec();
  EXPECT_EQ(reason, KESTREL_RUN_QUIT);
}

}  // namespace
}  // namespace kestrel::ctest
