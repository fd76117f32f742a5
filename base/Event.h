#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kestrel {

/// Keeps one handler connected to an event and disconnects it in its destructor. It may outlive the event.
class [[nodiscard]] Connection {
 public:
  Connection() = default;
  explicit Connection(std::function<void()> disconnect) : disconnect_(std::move(disconnect)) {}
  Connection(Connection&& other) noexcept : disconnect_(std::exchange(other.disconnect_, nullptr)) {}
  Connection& operator=(Connection&& other) noexcept {
    if (this != &other) {
      Disconnect();
      disconnect_ = std::exchange(other.disconnect_, nullptr);
    }
    return *this;
  }
  ~Connection() { Disconnect(); }

  void Disconnect() {
    if (auto disconnect = std::exchange(disconnect_, nullptr)) disconnect();
  }

 private:
  std::function<void()> disconnect_;
};

/// A notification to any number of handlers, called in the order in which they connected.
///
/// In-out arguments are references (`Event<std::string&, bool&>`). A handler may connect and disconnect
/// handlers, and destroy the event itself, while the event is being raised: disconnected handlers are no
/// longer called, new ones are called from the next raise on. Destroying the event disconnects all. An error
/// thrown by a handler ends the raise and propagates to the raiser.
template <typename... Args>
class Event {
 public:
  using Handler = std::function<void(Args...)>;

  Event() = default;
  ~Event() { DisconnectAll(); }
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  Connection Connect(Handler handler) {
    auto slot = std::make_shared<Slot>(Slot{std::move(handler), true});
    slots_->push_back(slot);
    return Connection([weakSlots = std::weak_ptr<Slots>(slots_), slot] {
      slot->connected = false;
      if (const auto connected = weakSlots.lock()) std::erase(*connected, slot);
    });
  }

  /// Also ends a raise in progress: no further handler is called.
  void DisconnectAll() {
    for (const auto& slot : *slots_) slot->connected = false;
    slots_->clear();
  }

  void operator()(Args... args) const {
    const Slots round = *slots_;
    for (const auto& slot : round) {
      if (slot->connected) slot->handler(args...);
    }
  }

  /// Whether a handler is connected; lets the raiser skip costly arguments.
  bool HasHandlers() const { return !slots_->empty(); }

 private:
  struct Slot {
    Handler handler;
    bool connected;
  };
  using Slots = std::vector<std::shared_ptr<Slot>>;

  std::shared_ptr<Slots> slots_ = std::make_shared<Slots>();
};

}  // namespace kestrel
