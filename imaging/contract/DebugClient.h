#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "base/Event.h"

namespace kestrel {

/// Connection to the diagnostics servers of this machine.
class DebugClient {
 public:
  virtual ~DebugClient() = default;

  /// The window that represents this process's project, and the process that a window belongs to.
  virtual std::int32_t GetProjectHandle() = 0;
  virtual std::int32_t GetWindowProcessId(std::int32_t Handle) = 0;

  /// Whether the server answers within the timeout.
  virtual bool PingServer(std::int32_t Handle, std::int32_t TimeoutMs) = 0;
  /// Sends a message and stores the server's answer in `Result`, which is unchanged without an answer.
  virtual std::int32_t SendMessage(std::int32_t Handle, std::int32_t Message, const std::string& Text,
                                   std::int32_t& Result, std::int32_t TimeoutMs) = 0;

  /// A server has sent a message to all clients, for example that it has started.
  Event<> OnBroadcast;
};

/// Counters in a block of memory that this process shares with the servers.
class SharedCounters {
 public:
  virtual ~SharedCounters() = default;
  virtual void Open(std::int32_t SizeBytes, const std::string& Name) = 0;
  virtual void Increment(std::int32_t ComponentId, std::int32_t By) = 0;
  virtual void Decrement(std::int32_t ComponentId, std::int32_t By) = 0;
};

/// The library of the diagnostics client.
class DebugClientLibrary {
 public:
  virtual ~DebugClientLibrary() = default;

  virtual std::unique_ptr<DebugClient> CreateClient() = 0;
  virtual std::unique_ptr<SharedCounters> CreateCounters() = 0;
  /// Enumerates the windows of the running servers: 0 begins, and the result 0 ends.
  virtual std::int32_t NextServerWindow(std::int32_t Previous) = 0;
};

}  // namespace kestrel
