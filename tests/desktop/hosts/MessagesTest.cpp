// A host that takes over messages and errors.

#include <QMessageBox>
#include <stdexcept>
#include <vector>

#include "HostProgram.h"
#include "base/RuntimeError.h"
#include "host/interface/IImageEvents.h"
#include "platform/qt/embed/HostServices.h"

namespace kestrel::desktop {
namespace {

class Services final : public qt::HostServices {
 public:
  QMessageBox::StandardButton message(const qt::HostMessage& message) override {
    messages.push_back(message);
    if (onMessage) onMessage();
    return answer;
  }
  bool error(const qt::HostError& error) override {
    errors.push_back(error);
    if (onError) onError();
    return takesErrors;
  }
  void handlerFailed(const std::exception_ptr& exception) override { failures.push_back(exception); }

  QMessageBox::StandardButton answer = QMessageBox::Cancel;
  bool takesErrors = true;
  std::function<void()> onMessage, onError;
  std::vector<qt::HostMessage> messages;
  std::vector<qt::HostError> errors;
  std::vector<std::exception_ptr> failures;
};

std::string textOf(const std::exception_ptr& exception) {
  try {
    std::rethrow_exception(exception);
  } catch (const std::exception& error) {
    return error.what();
  }
}

class HostMessages : public HostProgram {
 protected:
  HostMessages() {
    component_.setServices(services_);
    window_ = new QWidget;
    new QVBoxLayout(window_);
    editor_ = &addEditor(*window_);
    show(*window_);
  }
  ~HostMessages() override { delete window_; }

  IImageProcessingCtl& control() { return editor_->control(); }

  /// Whether `act` shows a box of the component, which the user closes.
  template <typename Act>
  bool showsBox(Act act) {
    bool shown = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (!box) return;
      shown = true;
      box->reject();
    });
    watch.start(1);
    act();
    settle();
    return shown;
  }

  const std::shared_ptr<Services> services_ = std::make_shared<Services>();
  QPointer<QWidget> window_;
  QPointer<qt::ImageEditor> editor_;
};

TEST_F(HostMessages, TheHostAsksAboutUnsavedChanges) {
  mirror(*editor_);
  EXPECT_FALSE(showsBox([&] { EXPECT_FALSE(control().SaveChanges()); }));
  ASSERT_EQ(services_->messages.size(), 1U);
  const qt::HostMessage& asked = services_->messages.front();
  EXPECT_EQ(asked.title, "Save Changes");
  EXPECT_EQ(asked.text, "Changes have been made file \"" + path("open.png") +
                            "\".\n\nDo you want to save these changes?");
  EXPECT_EQ(asked.icon, QMessageBox::Question);
  EXPECT_EQ(asked.buttons, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
  EXPECT_EQ(asked.defaultButton, QMessageBox::Yes);
  EXPECT_TRUE(asked.owner && editor_->isAncestorOf(asked.owner));
  services_->answer = QMessageBox::No;
  EXPECT_TRUE(control().SaveChanges());
  services_->answer = QMessageBox::Yes;
  EXPECT_TRUE(control().SaveChanges());
  EXPECT_FALSE(control().ImageControl().Modified()) << "it was saved";
}

TEST_F(HostMessages, AHostWithoutAnAnswerLeavesTheMessageToTheComponent) {
  services_->answer = QMessageBox::NoButton;
  mirror(*editor_);
  EXPECT_TRUE(showsBox([&] { EXPECT_FALSE(control().SaveChanges()); }));
}

TEST_F(HostMessages, TheHostGetsTheSentenceOfAFailedOpen) {
  services_->answer = QMessageBox::Ok;
  EXPECT_FALSE(showsBox([&] { EXPECT_FALSE(control().OpenImage(file("damaged.png"))); }));
  ASSERT_EQ(services_->messages.size(), 1U);
  const qt::HostMessage& failed = services_->messages.front();
  EXPECT_EQ(failed.title, "Open Image");
  EXPECT_EQ(failed.icon, QMessageBox::Warning);
  EXPECT_EQ(failed.buttons, QMessageBox::Ok);
  EXPECT_TRUE(failed.text.startsWith("Unable to open image \"" + path("damaged.png") + "\""))
      << failed.text.toStdString();
}

TEST_F(HostMessages, AnErrorComesWithItsNumberPlaceAndException) {
  const Connection connection = control().RequestOpenFilename.Connect(
      [](std::string&, bool&) { throw std::runtime_error("The catalogue is closed."); });
  EXPECT_FALSE(showsBox([&] { EXPECT_FALSE(control().OpenImage()); }));
  ASSERT_EQ(services_->errors.size(), 1U);
  const qt::HostError& error = services_->errors.front();
  EXPECT_EQ(error.number, err::kInternal);
  EXPECT_EQ(error.module, "ImageProcessingCtl");
  EXPECT_EQ(error.procedure, "OpenImage");
  EXPECT_GT(error.line, 0);
  EXPECT_FALSE(error.description.isEmpty());
  EXPECT_EQ(textOf(error.exception), "The catalogue is closed.");
  EXPECT_TRUE(services_->messages.empty()) << "the host has taken the error";
}

TEST_F(HostMessages, AnErrorThatTheHostDoesNotTakeIsAMessage) {
  services_->takesErrors = false;
  services_->answer = QMessageBox::Ok;
  const Connection connection = control().RequestOpenFilename.Connect(
      [](std::string&, bool&) { throw RuntimeError(err::kDeviceIO, "The scanner is off."); });
  EXPECT_FALSE(showsBox([&] { EXPECT_FALSE(control().OpenImage()); }));
  ASSERT_EQ(services_->messages.size(), 1U);
  EXPECT_EQ(services_->messages.front().title, "Application Error");
  EXPECT_TRUE(services_->messages.front().text.contains("The scanner is off. (57)"));
}

TEST_F(HostMessages, TheHostHearsFailuresOfItsHandlers) {
  std::vector<Connection> connections;
  const auto fail = [](auto&&...) { throw std::runtime_error("of the host"); };
  connections.push_back(control().ToolChange.Connect(fail));
  connections.push_back(control().ImageSave.Connect(fail));
  control().Tool(ipToolLine);
  ASSERT_EQ(services_->failures.size(), 1U);
  EXPECT_EQ(textOf(services_->failures.front()), "of the host");
  EXPECT_EQ(services_->errors.size(), 1U) << "and the member that raised the event reports it";
  // A save goes on after its handlers: their failure is reported nowhere else.
  EXPECT_TRUE(control().SaveImageAs(file("saved.png")));
  EXPECT_EQ(services_->failures.size(), 2U);
  EXPECT_EQ(services_->errors.size(), 1U);
}

TEST_F(HostMessages, TheHostHearsFailuresOfItsSink) {
  struct Sink final : IImageEvents {
    void ImageOpen(const std::string&) override { throw std::runtime_error("of the sink"); }
  };
  const auto sink = std::make_shared<Sink>();
  control().EventSink(sink);
  EXPECT_TRUE(control().OpenImage(file("open.png")));
  ASSERT_EQ(services_->failures.size(), 1U);
  EXPECT_EQ(textOf(services_->failures.front()), "of the sink");
}

TEST_F(HostMessages, TheHostHearsFailuresOfTheBrowsersHandlers) {
  qt::ImageBrowser browser(component_);
  const Connection connection = browser.control().PathChange.Connect(
      [](const std::string&) { throw std::runtime_error("of the browser's host"); });
  browser.control().Path(folder_.path().toStdString());
  ASSERT_FALSE(services_->failures.empty());
  EXPECT_EQ(textOf(services_->failures.front()), "of the browser's host");
  EXPECT_FALSE(services_->errors.empty());
}

TEST_F(HostMessages, AFailureInAnEventOfTheToolkitIsAnErrorWithoutAPlace) {
  const Connection connection =
      control().ImageControl().Click.Connect([] { throw std::runtime_error("in a click"); });
  editor_->setFocus();
  QWidget* const view = QApplication::focusWidget();
  ASSERT_TRUE(view && editor_->isAncestorOf(view));
  QTest::mouseClick(view, Qt::LeftButton, {}, view->rect().center());
  ASSERT_EQ(services_->errors.size(), 1U);
  EXPECT_EQ(textOf(services_->errors.front().exception), "in a click");
  EXPECT_EQ(services_->errors.front().module, "");
}

TEST_F(HostMessages, WhatTheHostsObjectThrowsIsIgnored) {
  services_->onMessage = [] { throw std::runtime_error("no box"); };
  services_->onError = [] { throw std::runtime_error("no report"); };
  mirror(*editor_);
  EXPECT_TRUE(showsBox([&] { EXPECT_FALSE(control().SaveChanges()); }));
  const Connection connection =
      control().RequestOpenFilename.Connect([](std::string&, bool&) { throw std::runtime_error("x"); });
  EXPECT_TRUE(showsBox([&] { EXPECT_FALSE(control().OpenImage()); }));
}

TEST_F(HostMessages, TheHostMayEndTheEditorInAMessageAndInAnError) {
  services_->onMessage = [&] { delete editor_.data(); };
  services_->answer = QMessageBox::Yes;
  mirror(*editor_);
  EXPECT_FALSE(control().SaveChanges());
  EXPECT_FALSE(editor_);
  settle();

  editor_ = &addEditor(*window_);
  services_->onError = [&] { delete editor_.data(); };
  const Connection connection =
      control().RequestOpenFilename.Connect([](std::string&, bool&) { throw std::runtime_error("x"); });
  EXPECT_FALSE(control().OpenImage());
  EXPECT_FALSE(editor_);
}

TEST_F(HostMessages, TheServicesEndWithTheComponentThatSetThem) {
  {
    qt::Component other;
    const auto others = std::make_shared<Services>();
    other.setServices(others);
    mirror(*editor_);
    EXPECT_FALSE(control().SaveChanges());
    EXPECT_EQ(others->messages.size(), 1U) << "the latest object is asked";
    EXPECT_TRUE(services_->messages.empty());
  }
  EXPECT_TRUE(showsBox([&] { EXPECT_FALSE(control().SaveChanges()); }));
  component_.setServices(services_);
  EXPECT_FALSE(showsBox([&] { EXPECT_FALSE(control().SaveChanges()); }));
  component_.setServices(nullptr);
  EXPECT_TRUE(showsBox([&] { EXPECT_FALSE(control().SaveChanges()); }));
}

}  // namespace
}  // namespace kestrel::desktop
