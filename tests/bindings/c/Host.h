#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bindings/c/kestrel.h"

namespace kestrel::ctest {

// -- Values -----------------------------------------------------------------------------------------------

inline kestrel_value Text(const char* text) {
  kestrel_value value{};
  value.type = KESTREL_STRING;
  value.as.string = {text, KESTREL_TO_NUL};
  return value;
}
inline kestrel_value Number(std::int32_t number) {
  kestrel_value value{};
  value.type = KESTREL_INT32;
  value.as.int32 = number;
  return value;
}
inline kestrel_value Double(double number) {
  kestrel_value value{};
  value.type = KESTREL_DOUBLE;
  value.as.float64 = number;
  return value;
}
inline kestrel_value Boolean(bool truth) {
  kestrel_value value{};
  value.type = KESTREL_BOOLEAN;
  value.as.boolean = truth ? 1 : 0;
  return value;
}
inline kestrel_value ObjectValue(kestrel_object* object) {
  kestrel_value value{};
  value.type = KESTREL_OBJECT;
  value.as.object = object;
  return value;
}
inline kestrel_value OfType(std::int32_t type) {
  kestrel_value value{};
  value.type = type;
  return value;
}

/// A result, cleared at its end.
class Result {
 public:
  Result() = default;
  ~Result() { kestrel_value_clear(&value); }
  Result(const Result&) = delete;
  Result& operator=(const Result&) = delete;

  kestrel_value* place() { return &value; }
  std::string text() const {
    EXPECT_EQ(value.type, KESTREL_STRING);
    return value.type == KESTREL_STRING ? std::string(value.as.string.data, value.as.string.length) : "";
  }

  kestrel_value value{};
};

/// A handle, released at its end.
class Object {
 public:
  Object() = default;
  explicit Object(kestrel_object* taken) : handle(taken) {}
  Object(Object&& other) noexcept : handle(std::exchange(other.handle, nullptr)) {}
  Object& operator=(Object&& other) noexcept {
    std::swap(handle, other.handle);
    return *this;
  }
  ~Object() { release(); }

  void release() { kestrel_release(std::exchange(handle, nullptr)); }
  operator kestrel_object*() const { return handle; }

  kestrel_object* handle = nullptr;
};

// -- Calls ------------------------------------------------------------------------------------------------

/// "91 The object is Nothing, or was released."; empty for success.
inline std::string Outcome(kestrel_status status) {
  if (status == KESTREL_OK) return {};
  const kestrel_error* const error = kestrel_last_error();
  EXPECT_EQ(error->number, status) << error->description;
  return std::to_string(status) + " " + error->description;
}

inline Object Create(const char* className) {
  Object made;
  EXPECT_EQ(Outcome(kestrel_create(className, &made.handle)), "") << className;
  return made;
}

inline Object GetObject(kestrel_object* object, const char* name) {
  kestrel_value value{};
  EXPECT_EQ(Outcome(kestrel_get(object, name, &value)), "") << name;
  EXPECT_EQ(value.type, KESTREL_OBJECT) << name;
  return Object(value.type == KESTREL_OBJECT ? value.as.object : nullptr);
}

inline std::int32_t GetNumber(kestrel_object* object, const char* name) {
  Result value;
  EXPECT_EQ(Outcome(kestrel_get(object, name, value.place())), "") << name;
  EXPECT_EQ(value.value.type, KESTREL_INT32) << name;
  return value.value.as.int32;
}

inline bool GetBoolean(kestrel_object* object, const char* name) {
  Result value;
  EXPECT_EQ(Outcome(kestrel_get(object, name, value.place())), "") << name;
  EXPECT_EQ(value.value.type, KESTREL_BOOLEAN) << name;
  return value.value.as.boolean != 0;
}

inline std::string GetText(kestrel_object* object, const char* name) {
  Result value;
  EXPECT_EQ(Outcome(kestrel_get(object, name, value.place())), "") << name;
  return value.text();
}

inline std::string Call(kestrel_object* object, const char* name, std::vector<kestrel_value> arguments = {},
                        kestrel_value* result = nullptr) {
  return Outcome(kestrel_call(object, name, arguments.data(), static_cast<std::int32_t>(arguments.size()),
                              nullptr, result));
}

// -- Events -----------------------------------------------------------------------------------------------

/// A handler as a function object, with the count of its calls and its release.
class Handler {
 public:
  using Function = std::function<kestrel_status(kestrel_value* arguments, std::int32_t count)>;

  explicit Handler(Function function = {}) : function_(std::move(function)) {}
  ~Handler() { disconnect(); }
  Handler(const Handler&) = delete;
  Handler& operator=(const Handler&) = delete;

  std::string connect(kestrel_object* object, const char* event) {
    return Outcome(kestrel_connect(object, event, &Handler::run, this, &Handler::release, &connection_));
  }
  kestrel_status disconnect() { return kestrel_disconnect(std::exchange(connection_, nullptr)); }

  int calls = 0;
  int releases = 0;

 private:
  static kestrel_status run(void* user, kestrel_value* arguments, std::int32_t count) {
    auto& self = *static_cast<Handler*>(user);
    ++self.calls;
    const Function function = self.function_;
    return function ? function(arguments, count) : KESTREL_OK;
  }
  static void release(void* user) { ++static_cast<Handler*>(user)->releases; }

  Function function_;
  kestrel_connection* connection_ = nullptr;
};

// -- Threads ----------------------------------------------------------------------------------------------

/// A host on one platform, with a folder for its files and settings that nobody else sees.
class Host : public testing::Test {
 protected:
  explicit Host(std::int32_t platform) : platform_(platform) {
    std::string name = (std::filesystem::temp_directory_path() / "kestrel-c-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("No scratch folder could be made.");
    folder_ = name;
    setenv("KESTREL_STORE", file("settings.store").c_str(), 1);
    setenv("XDG_CACHE_HOME", folder_.c_str(), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
  }
  ~Host() override { std::filesystem::remove_all(folder_); }

  void SetUp() override { ASSERT_EQ(Outcome(kestrel_start(platform_)), ""); }
  void TearDown() override { EXPECT_EQ(Outcome(kestrel_stop()), ""); }

  std::string file(const char* name) const { return folder_ + "/" + name; }

  /// Writes a picture of 40 by 30.
  std::string png() const {
    const Object picture = Create("ImgX");
    const Object document = GetObject(picture, "Document");
    EXPECT_EQ(Call(document, "NewImage", {Number(40), Number(30), ObjectValue(nullptr)}), "");
    const Object writer = GetObject(picture, "Writer");
    std::string name = file("a.png");
    EXPECT_EQ(Call(writer, "ToFile", {Text(name.c_str()), Number(2)}), "");
    return name;
  }

  static Object started() {
    Object processing = Create("ImageProcessing");
    EXPECT_EQ(Call(processing, "Initialize"), "");
    return processing;
  }

 private:
  const std::int32_t platform_;
  std::string folder_;
};

}  // namespace kestrel::ctest
