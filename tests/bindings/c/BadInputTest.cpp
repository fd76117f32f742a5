// Every member of every class that can be reached, through the interface for C, with every wrong kind of
// argument, and at wrong times.

#include <set>

#include "Host.h"
#include "bindings/c/Objects.h"
#include "bindings/c/Values.h"
#include "host/dispatch/Registry.h"
#include "tests/logic/dispatch/Reachable.h"

namespace kestrel::ctest {
namespace {

using dispatch::Kind;
using testing::EndsWith;
using testing::StartsWith;

struct Wrong {
  const char* what;
  kestrel_value value;
  std::int32_t number;
};

class CBadInput : public Host {
 protected:
  CBadInput() : Host(KESTREL_HEADLESS) {}

  /// The walk of the dispatch tests, from handles to handles.
  static std::vector<Object> reachable(const std::vector<Object>& from) {
    std::vector<Variant> start;
    for (const Object& object : from) {
      start.emplace_back(Variant::ObjectReference(c::ItemOf(object.handle)->Reference()));
    }
    std::vector<Object> found;
    for (const Variant& object : dispatch::Reachable(start, dispatch::Owned::kIncluded)) {
      found.emplace_back(c::ToValue(object).as.object);
    }
    return found;
  }

  std::vector<Object> samples() const {
    std::vector<Object> made;
    made.push_back(started());
    EXPECT_EQ(Call(made[0], "OpenImage", {Text(png().c_str())}), "");
    for (const char* const name : {"Options", "IImageEvents", "ImageBrowser", "Palette", "Point"}) {
      made.push_back(Create(name));
    }
    return made;
  }

  static kestrel_value plausible(const dispatch::Parameter& parameter) {
    switch (parameter.type.kind) {
      case Kind::kBoolean:
        return Boolean(false);
      case Kind::kString:
      case Kind::kVariant:
        return Text("1");
      case Kind::kObject:
        return ObjectValue(nullptr);
      default:
        return Number(1);
    }
  }

  std::vector<Wrong> wrongValues(const dispatch::Parameter& parameter) const {
    kestrel_value noText = Text(nullptr);
    noText.as.string.length = 12;
    int onTheStack = 0;
    std::vector<Wrong> wrong = {
        {"an unknown type", OfType(4711), KESTREL_TYPE_MISMATCH},
        {"a negative type", OfType(-2), KESTREL_TYPE_MISMATCH},
        {"a text without characters", noText, KESTREL_INVALID_CALL},
        {"a released object", ObjectValue(released_), KESTREL_OBJECT_GONE},
        {"no handle", ObjectValue(reinterpret_cast<kestrel_object*>(&onTheStack)), KESTREL_OBJECT_GONE},
    };
    const Kind kind = parameter.type.kind;
    if (kind == Kind::kVariant) return wrong;
    if (kind == Kind::kObject) {
      wrong.push_back({"a number", Number(5), KESTREL_OBJECT_REQUIRED});
      wrong.push_back({"a text", Text("text"), KESTREL_OBJECT_REQUIRED});
      wrong.push_back({"Empty", OfType(KESTREL_EMPTY), KESTREL_OBJECT_REQUIRED});
      if (!parameter.nullable) wrong.push_back({"Nothing", ObjectValue(nullptr), KESTREL_OBJECT_GONE});
      if (parameter.type.objectClass().name != "Palette") {
        wrong.push_back({"another class", ObjectValue(palette_), KESTREL_TYPE_MISMATCH});
      }
      return wrong;
    }
    wrong.push_back({"Null", OfType(KESTREL_NULL), KESTREL_INVALID_NULL});
    wrong.push_back({"Nothing", ObjectValue(nullptr), KESTREL_OBJECT_GONE});
    if (kind == Kind::kString) return wrong;
    wrong.push_back({"a text", Text("text"), KESTREL_TYPE_MISMATCH});
    const bool isLimited = kind != Kind::kBoolean && kind != Kind::kDouble;
    if (isLimited) wrong.push_back({"a large number", Double(1e300), KESTREL_OVERFLOW});
    return wrong;
  }

  void expectRefused(kestrel_object* object, const dispatch::Member& member, std::int32_t use,
                     std::span<const dispatch::Parameter> parameters) {
    for (std::size_t at = 0; at < parameters.size(); ++at) {
      std::vector<kestrel_value> before;
      bool callable = true;
      for (std::size_t i = 0; i < at; ++i) {
        before.push_back(plausible(parameters[i]));
        callable = callable && (parameters[i].type.kind != Kind::kObject || parameters[i].nullable);
      }
      if (!callable) continue;
      for (const Wrong& wrong : wrongValues(parameters[at])) {
        std::vector<kestrel_value> values = before;
        values.push_back(wrong.value);
        for (std::size_t i = at + 1; i < parameters.size() && !parameters[i].IsOptional(); ++i) {
          values.push_back(plausible(parameters[i]));
        }
        const std::string where =
            std::string(member.name) + ", argument " + std::to_string(at + 1) + ": " + wrong.what;
        Result result;
        const kestrel_status status =
            kestrel_invoke(object, member.number, use, values.data(),
                           static_cast<std::int32_t>(values.size()), nullptr, result.place());
        const kestrel_error& error = *kestrel_last_error();
        EXPECT_EQ(status, wrong.number) << where << ": " << error.description;
        if (status == KESTREL_OK) continue;
        EXPECT_EQ(error.number, status) << where;
        EXPECT_EQ(error.position, static_cast<std::int32_t>(at) + 1) << where << ": " << error.description;
        EXPECT_THAT(error.description, testing::AnyOf(EndsWith("."), EndsWith("\"."))) << where;
        EXPECT_EQ(result.value.type, KESTREL_EMPTY) << where;
        ++refused_;
      }
    }
  }

  void SetUp() override {
    Host::SetUp();
    palette_ = Create("Palette");
    released_ = Create("Palette").handle;
  }
  void TearDown() override {
    palette_.release();
    Host::TearDown();
  }

  /// Each member without arguments or with plausible ones. Returns the number of calls.
  static std::size_t callAll(kestrel_object* object, const std::set<std::string>& without,
                             const std::function<void(const std::string& name, kestrel_status)>& note) {
    const dispatch::ClassDescription& description = c::ClassOf(object);
    std::size_t calls = 0;
    for (const dispatch::Member& member : description.members) {
      if (without.contains(std::string(member.name))) continue;
      std::vector<kestrel_value> values;
      for (const dispatch::Parameter& parameter : member.parameters) {
        if (!parameter.IsOptional()) values.push_back(plausible(parameter));
      }
      Result result;
      note(std::string(member.name),
           kestrel_invoke(object, member.number, KESTREL_GET, values.data(),
                          static_cast<std::int32_t>(values.size()), nullptr, result.place()));
      ++calls;
      if (!member.put) continue;
      kestrel_value value = plausible(member.value);
      note(std::string(member.name),
           kestrel_invoke(object, member.number, KESTREL_SET, &value, 1, nullptr, nullptr));
      ++calls;
    }
    return calls;
  }

  std::size_t refused_ = 0;

 private:
  Object palette_;
  kestrel_object* released_ = nullptr;
};

TEST_F(CBadInput, WrongArgumentsOfEveryMember) {
  const std::vector<Object> from = samples();
  std::size_t classes = 0;
  for (const Object& object : reachable(from)) {
    ++classes;
    for (const dispatch::Member& member : c::ClassOf(object.handle).members) {
      if (member.call) expectRefused(object, member, KESTREL_GET, member.parameters);
      if (member.put) expectRefused(object, member, KESTREL_SET, {&member.value, 1});
    }
  }
  EXPECT_GT(classes, 30u);
  EXPECT_GT(refused_, 2000u);
}

TEST_F(CBadInput, EveryMemberWithPlausibleArguments) {
  testing::internal::CaptureStderr();  // questions without a user
  const std::vector<Object> from = samples();
  std::size_t calls = 0;
  for (const Object& object : reachable(from)) {
    calls += callAll(object, {"Terminate", "ToFile"}, [](const std::string& name, kestrel_status status) {
      if (status != KESTREL_OK) {
        EXPECT_STRNE(kestrel_last_error()->description, "") << name;
      }
    });
  }
  testing::internal::GetCapturedStderr();
  EXPECT_GT(calls, 400u);
}

TEST_F(CBadInput, EveryMemberAfterTheEndOfTheThread) {
  const std::vector<Object> from = samples();
  const std::vector<Object> objects = reachable(from);
  ASSERT_EQ(Outcome(kestrel_stop()), "");
  for (const Object& object : objects) {
    callAll(object, {}, [](const std::string& name, kestrel_status status) {
      EXPECT_EQ(status, KESTREL_OBJECT_GONE) << name << ": " << kestrel_last_error()->description;
    });
  }
}

TEST_F(CBadInput, EveryMemberOfAWindowThatIsGone) {
  const Object processing = started();
  std::vector<Object> from;
  from.push_back(GetObject(processing, "Control"));
  from.push_back(GetObject(processing, "CommandBars"));
  EXPECT_EQ(Call(processing, "Terminate"), "");
  for (const Object& object : from) {
    callAll(object, {}, [](const std::string& name, kestrel_status status) {
      EXPECT_EQ(status, KESTREL_OBJECT_GONE) << name << ": " << kestrel_last_error()->description;
    });
  }
}

TEST_F(CBadInput, EveryMemberFromWithinAHandler) {
  testing::internal::CaptureStderr();
  const Object processing = started();
  std::size_t calls = 0;
  bool inside = false;
  Handler handler([&](kestrel_value*, std::int32_t) {
    if (std::exchange(inside, true)) return KESTREL_OK;
    calls = callAll(processing, {"Terminate"}, [](const std::string&, kestrel_status) {});
    EXPECT_EQ(Call(processing, "Terminate"), "");
    return KESTREL_OK;
  });
  ASSERT_EQ(handler.connect(processing, "ImageOpen"), "");
  Call(processing, "OpenImage", {Text(png().c_str())});
  testing::internal::GetCapturedStderr();
  EXPECT_GT(calls, 50u);
}

}  // namespace
}  // namespace kestrel::ctest
