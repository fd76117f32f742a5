#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/RuntimeError.h"
#include "imaging/contract/DebugClient.h"

namespace kestrel::fakes {

/// A fake diagnostics tool: servers that answer or not, and the messages they received.
struct DebugTool {
  struct Message {
    std::int32_t handle, message;
    std::string text;
    std::int32_t timeout;
  };

  std::vector<std::int32_t> servers;             // in the order of enumeration
  std::vector<std::int32_t> answering;           // servers that answer a ping
  std::map<std::int32_t, std::int32_t> answers;  // by message
  bool clientCanBeMade = true;
  bool sendingFails = false;

  std::vector<std::int32_t> pinged;
  std::vector<Message> sent;
  std::string counters;  // calls on the shared counters
  class Client* client = nullptr;
};

class Client : public DebugClient {
 public:
  explicit Client(DebugTool& tool) : tool_(tool) { tool_.client = this; }
  ~Client() override {
    if (tool_.client == this) tool_.client = nullptr;
  }
  std::int32_t GetProjectHandle() override { return 4711; }
  std::int32_t GetWindowProcessId(std::int32_t Handle) override { return Handle + 1; }
  bool PingServer(std::int32_t Handle, std::int32_t TimeoutMs) override {
    EXPECT_EQ(TimeoutMs, 100);
    tool_.pinged.push_back(Handle);
    return std::count(tool_.answering.begin(), tool_.answering.end(), Handle) > 0;
  }
  std::int32_t SendMessage(std::int32_t Handle, std::int32_t Message, const std::string& Text,
                           std::int32_t& Result, std::int32_t TimeoutMs) override {
    if (tool_.sendingFails) throw RuntimeError(err::kDeviceIO, "The server is gone.");
    tool_.sent.push_back({Handle, Message, Text, TimeoutMs});
    if (tool_.answers.contains(Message)) Result = tool_.answers[Message];
    return 1;
  }

 private:
  DebugTool& tool_;
};

class Counters : public SharedCounters {
 public:
  explicit Counters(DebugTool& tool) : tool_(tool) {}
  void Open(std::int32_t SizeBytes, const std::string& Name) override {
    tool_.counters += "open " + std::to_string(SizeBytes) + " " + Name + ";";
  }
  void Increment(std::int32_t ComponentId, std::int32_t By) override { Note("+", ComponentId, By); }
  void Decrement(std::int32_t ComponentId, std::int32_t By) override { Note("-", ComponentId, By); }

 private:
  void Note(const char* sign, std::int32_t id, std::int32_t by) {
    tool_.counters += std::to_string(id) + sign + std::to_string(by) + ";";
  }
  DebugTool& tool_;
};

class Library : public DebugClientLibrary {
 public:
  explicit Library(DebugTool& tool) : tool_(tool) {}
  std::unique_ptr<DebugClient> CreateClient() override {
    if (!tool_.clientCanBeMade) throw RuntimeError(err::kCannotCreateObject, "The client can't be made.");
    return std::make_unique<Client>(tool_);
  }
  std::unique_ptr<SharedCounters> CreateCounters() override { return std::make_unique<Counters>(tool_); }
  std::int32_t NextServerWindow(std::int32_t Previous) override {
    auto next = tool_.servers.begin();
    if (Previous != 0) next = std::find(next, tool_.servers.end(), Previous) + 1;
    return next == tool_.servers.end() ? 0 : *next;
  }

 private:
  DebugTool& tool_;
};

}  // namespace kestrel::fakes
