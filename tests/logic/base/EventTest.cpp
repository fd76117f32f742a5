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

TEST(Event, PassesArgumentsByReference) {
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

TEST(Event, DropsAHandlerWhoseConnectionEnded) {
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

TEST(Event, SkipsAHandlerDisconnectedDuringTheCall) {
  Event<> event;
  int calls = 0;
  Connection second;
  const Connection first = event.Connect([&] { second.Disconnect(); });
  second = event.Connect([&] { ++calls; });
  event();
  EXPECT_EQ(calls, 0);
}

TEST(Event, CallsAHandlerConnectedDuringACallFromTheNextOn) {
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

TEST(Event, CallsNoHandlerAfterItsDestructionDuringACall) {
  auto event = std::make_unique<Event<>>();
  int calls = 0;
  const Connection first = event->Connect([&] { event.reset(); });
  const Connection second = event->Connect([&] { ++calls; });
  (*event)();
  EXPECT_EQ(calls, 0);
}

TEST(Event, KeepsTheHandlerThatDestroysItUntilItReturns) {
  auto event = std::make_unique<Event<>>();
  auto captured = std::make_shared<int>(7);
  const std::weak_ptr<int> watched = captured;
  int seen = 0;
  Connection connection = event->Connect([&event, &connection, &seen, captured] {
    connection.Disconnect();
    event.reset();
    seen = *captured;
  });
  captured.reset();
  (*event)();
  EXPECT_EQ(seen, 7);
  EXPECT_TRUE(watched.expired()) << "released once it has returned";
}

TEST(Event, DisconnectsAllDuringACall) {
  Event<> event;
  int calls = 0;
  const Connection first = event.Connect([&] { event.DisconnectAll(); });
  const Connection second = event.Connect([&] { ++calls; });
  event();
  event();
  EXPECT_EQ(calls, 0);
  EXPECT_FALSE(event.HasHandlers());
}

TEST(Event, AnErrorEndsTheCall) {
  Event<> event;
  int calls = 0;
  const Connection first = event.Connect([] { throw std::runtime_error("no"); });
  const Connection second = event.Connect([&] { ++calls; });
  EXPECT_THROW(event(), std::runtime_error);
  EXPECT_EQ(calls, 0);
}

TEST(Connection, MayOutliveItsEvent) {
  auto captured = std::make_shared<int>();
  const std::weak_ptr<int> watched = captured;
  Connection connection;
  {
    Event<> event;
    connection = event.Connect([captured] {});
    captured.reset();
    event();
    EXPECT_FALSE(watched.expired()) << "the event keeps its handler";
  }
  Event<> next;
  int calls = 0;
  const Connection other = next.Connect([&] { ++calls; });
  connection.Disconnect();
  EXPECT_TRUE(watched.expired()) << "the handler is released";
  connection.Disconnect();
  next();
  EXPECT_EQ(calls, 1) << "no other event's handler is disconnected";
}

}  // namespace
}  // namespace kestrel
