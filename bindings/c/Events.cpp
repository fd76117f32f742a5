// Handlers of a host for the events of objects.

#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "Objects.h"
#include "Status.h"
#include "Text.h"
#include "Values.h"
#include "base/Event.h"
#include "host/dispatch/Errors.h"
#include "host/dispatch/Invoke.h"

namespace kestrel::c {
namespace {

using dispatch::EventDescription;

/// The function of a host, released when no raise can call it any more.
class HostHandler {
 public:
  HostHandler(const EventDescription& event, kestrel_handler handler, void* user, void (*release)(void* user))
      : event_(event), handler_(handler), user_(user), release_(release) {}
  ~HostHandler() {
    if (isConnected_ && release_) release_(user_);
  }
  HostHandler(const HostHandler&) = delete;
  HostHandler& operator=(const HostHandler&) = delete;

  /// From now on the host's pointer is kept here.
  void Connected() { isConnected_ = true; }

  void Call(std::span<Variant> arguments) const {
    const Apartment::Call call(Apartment::Current());
    Values values;
    values.Fill(arguments);
    const kestrel_status status =
        handler_(user_, values.All().data(), static_cast<std::int32_t>(arguments.size()));
    if (status != KESTREL_OK) RaiseHandlerError(status, std::string(event_.name));
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      if (event_.parameters[i].inOut) arguments[i] = ToVariant(values.All()[i]);
    }
  }

 private:
  /// The arguments as the host sees them, cleared at the end.
  class Values {
   public:
    Values() = default;
    ~Values() {
      for (kestrel_value& value : values_) kestrel_value_clear(&value);
    }
    Values(const Values&) = delete;
    Values& operator=(const Values&) = delete;

    void Fill(std::span<const Variant> arguments) {
      values_.resize(arguments.size());
      for (std::size_t i = 0; i < arguments.size(); ++i) values_[i] = ToValue(arguments[i]);
    }
    std::vector<kestrel_value>& All() { return values_; }

   private:
    std::vector<kestrel_value> values_;
  };

  const EventDescription& event_;
  const kestrel_handler handler_;
  void* const user_;
  void (*const release_)(void* user);
  bool isConnected_ = false;
};

class ConnectionItem final : public Item {
 public:
  ConnectionItem(std::shared_ptr<Apartment> owner, Connection connection)
      : Item(std::move(owner)), connection_(std::move(connection)) {}

  void End() override { connection_.Disconnect(); }

 private:
  Connection connection_;
};

}  // namespace
}  // namespace kestrel::c

using namespace kestrel::c;

kestrel_status kestrel_connect(kestrel_object* object, const char* event, kestrel_handler handler, void* user,
                               void (*release_user)(void* user), kestrel_connection** connection) {
  return Guarded([&] {
    Require(connection, "There is no place for the connection.");
    if (!handler) RaiseInvalidCall("There is no handler.");
    const ObjectCall call(object);
    const auto* const description = call.Class().FindEvent(TextOrEmpty(event));
    if (!description) kestrel::dispatch::RaiseNoSuchEvent(call.Class(), TextOrEmpty(event));
    const auto shared = std::make_shared<HostHandler>(*description, handler, user, release_user);
    kestrel::Connection made =
        kestrel::dispatch::Connect(call.Target(), description->number,
                                   [shared](std::span<kestrel::Variant> values) { shared->Call(values); });
    auto item = std::make_shared<ConnectionItem>(Apartment::Current(), std::move(made));
    *connection =
        reinterpret_cast<kestrel_connection*>(Handles::All().Add(HandleKind::kConnection, std::move(item)));
    shared->Connected();
  });
}

kestrel_status kestrel_disconnect(kestrel_connection* connection) {
  return Guarded([&] {
    if (connection) ReleaseHandle(HandleKind::kConnection, connection);
  });
}
