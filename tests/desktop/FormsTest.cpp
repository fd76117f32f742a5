// Forms whose window is embedded, or destroyed by a widget that embeds or owns it.

#include <gtest/gtest.h>

#include <QScreen>

#include "EditorBench.h"
#include "base/RuntimeError.h"

namespace kestrel::desktop {
namespace {

class FormOnTheDesktop : public testing::Test {
 protected:
  FormOnTheDesktop() : form_(dynamic_cast<qt::QtForm*>(platform_->CreateForm("frmRotate").release())) {
    unloaded_ = form_->Unloaded.Connect([this] { ++unloads_; });
  }

  static std::int32_t raisedBy(const std::function<void()>& call) {
    try {
      call();
      return 0;
    } catch (const RuntimeError& error) {
      return error.Number();
    }
  }

  std::unique_ptr<qt::QtPlatform> platform_ = testPlatform();
  std::unique_ptr<qt::QtForm> form_;
  Connection unloaded_;
  int unloads_ = 0;
};

TEST_F(FormOnTheDesktop, SurvivesTheWidgetThatEmbedsIt) {
  {
    QWidget host;
    form_->embedIn(host);
    host.show();
    EXPECT_TRUE(form_->Visible());
  }
  EXPECT_FALSE(form_->Visible());
  EXPECT_EQ(raisedBy([&] { form_->Width(); }), err::kObjectNotSet);
  EXPECT_EQ(raisedBy([&] { form_->Move(1, 2, 3, 4); }), err::kObjectNotSet);
  EXPECT_EQ(raisedBy([&] { form_->NormalPlace(); }), err::kObjectNotSet);
  EXPECT_EQ(raisedBy([&] { form_->Caption("a"); }), err::kObjectNotSet);
  EXPECT_EQ(raisedBy([&] { form_->Show(); }), err::kObjectNotSet);
  EXPECT_EQ(raisedBy([&] { form_->Show(true); }), err::kObjectNotSet);
  EXPECT_EQ(raisedBy([&] { form_->Hide(); }), 0) << "it is hidden";
  EXPECT_EQ(raisedBy([&] { form_->Unload(); }), 0);
  EXPECT_EQ(unloads_, 1);
}

TEST_F(FormOnTheDesktop, SurvivesAnOwnerThatIsDestroyedDuringTheDialog) {
  whenModalOpens([](QWidget& dialog) { delete &dialog; });
  EXPECT_EQ(raisedBy([&] { form_->Show(true); }), 0);
  EXPECT_EQ(raisedBy([&] { form_->Unload(); }), 0);
  EXPECT_EQ(unloads_, 1);
}

TEST_F(FormOnTheDesktop, MayBeDestroyedWhileItIsAskedWhetherItMayUnload) {
  form_->Show();
  const Connection asked = form_->QueryUnload.Connect([&](bool&, std::int32_t) { delete &form_->window(); });
  EXPECT_EQ(raisedBy([&] { form_->Unload(); }), 0);
  EXPECT_EQ(unloads_, 1);
}

TEST_F(FormOnTheDesktop, ThatWasPlacedBeforeItIsEmbeddedIsPlacedByItsHost) {
  form_->Move(10, 20, 300, 200);
  QWidget host;
  form_->embedIn(host);
  host.resize(500, 450);
  host.show();
  settle();
  const QRect place = form_->window().geometry();
  ASSERT_GT(place.height(), 200);
  EXPECT_EQ(form_->NormalPlace(), (Rectangle{place.x(), place.y(), place.width(), place.height()}));
}

TEST_F(FormOnTheDesktop, ThatOnlyGotASizeHasItsTitleBarOnTheScreen) {
  form_->Height(form_->Height() + 10);
  form_->Show();
  QWidget& window = form_->window();
  const QPoint corner = window.screen()->availableGeometry().topLeft();
  // Where some window managers put the client area of a window that is as high as the screen.
  window.setGeometry(QRect(corner, window.size()));
  settle();
  ASSERT_NE(window.frameGeometry(), window.geometry());
  EXPECT_EQ(window.frameGeometry().topLeft(), corner);
}

}  // namespace
}  // namespace kestrel::desktop
