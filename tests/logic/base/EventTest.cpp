#include "base/Event.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace kestrel {
namespace {

TEST(Event, CallsItsHandlersInTheOrderOfConnection) {
  Event<int> event;
  std::string calls;
  const Connection a = event.Connect([&](int value) { calls += "a" + std::to_string(value); });
  const Connection b = event.Connect([&](int value) { calls += "b" + std::to_string(value); });
  event(1);
  EXPECT_EQ(calls, "a1b1");
}

TEST(Event, HandsArgumentsOnByReference) {
  Event<std::string&, bool&> event;
  const Connection a = event.Connect([](std::string& name, bool& cancel) {
    name = "changed";
    cancel = true;
  });
  const Connection b = event.Connect([](std::string& name, bool& cancel) {
    if (cancel) name += " and seen";
  });
  std::string name = "a";
  bool cancel = false;
  event(name, cancel);
  EXPECT_EQ(name, "changed and seen");
  EXPECT_TRUE(cancel);
}

TEST(Event, ForgetsAHandlerWhoseConnectionEnded) {
  Event<> event;
  int calls = 0;
  {
    const Connection connection = event.Connect([&] { ++calls; });
    event();
    EXPECT_TRUE(event.HasHandlers());
  }
  event();
  EXPECT_EQ(calls, 1);
  EXPECT_FALSE(event.HasHandlers());
}

TEST(Event, LeavesOutAHandlerThatIsDisconnectedDuringTheRound) {
  Event<> event;
  int calls = 0;
  Connection second;
  const Connection first = event.Connect([&] { second.Disconnect(); });
  second = event.Connect([&] { ++calls; });
  event();
  EXPECT_EQ(calls, 0);
}

TEST(Event, CallsAHandlerThatComesInDuringARoundFromTheNextOn) {
  Event<> event;
  int calls = 0;
  bool connected = false;
  Connection late;
  const Connection first = event.Connect([&] {
    if (!connected) late = event.Connect([&] { ++calls; });
    connected = true;
  });
  event();
  EXPECT_EQ(calls, 0);
  event();
  EXPECT_EQ(calls, 1);
}

TEST(Event, MayEndWhileItIsRaised) {
  auto event = std::make_unique<Event<>>();
  int calls = 0;
  const Connection first = event->Connect([&] { event.reset(); });
  const Connection second = event->Connect([&] { ++calls; });
  (*event)();
  EXPECT_EQ(calls, 1);
}

TEST(Event, LetsAnErrorEndTheRound) {
  Event<> event;
  int calls = 0;
  const Connection first = event.Connect([] { throw std::runtime_error("no"); });
  const Connection second = event.Connect([&] { ++calls; });
  EXPECT_THROW(event(), std::runtime_error);
  EXPECT_EQ(calls, 0);
}

TEST(Connection, MayOutliveItsEvent) {
  const auto held = std::make_shared<int>(0);
  Connection connection;
  {
    Event<> event;
    connection = event.Connect([held] { ++*held; });
    event();
  }
  EXPECT_NO_THROW(connection.Disconnect());
  EXPECT_NO_THROW(connection.Disconnect());
  EXPECT_EQ(*held, 1);
  EXPECT_EQ(held.use_count(), 1) << "the handler is released, at the latest by the connection";
}

}  // namespace
}  // namespace kestrel
