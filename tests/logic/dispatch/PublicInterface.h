#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "InterfaceText.h"

namespace kestrel::dispatch {

/// Each class of the public interface has exactly the members of its list, which is written by hand.
class PublicInterface : public testing::Test {
 protected:
  static void Expect(const std::string& name, const std::string& list) {
    const ClassDescription* found = FindClass(name);
    ASSERT_NE(found, nullptr) << name;
    EXPECT_EQ(found->name, name);
    EXPECT_THAT(LinesOf(*found), testing::ElementsAreArray(LinesOf(list)));
  }
  static void ExpectValues(const std::string& name, const std::string& list) {
    const auto all = Enumerations();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const auto* row) { return row->name == name; });
    ASSERT_NE(found, all.end()) << name;
    std::vector<std::string> values;
    for (const EnumerationValue& value : (*found)->values) {
      values.push_back(std::string(value.name) + " " + std::to_string(value.value));
    }
    std::sort(values.begin(), values.end());
    EXPECT_THAT(values, testing::ElementsAreArray(LinesOf(list)));
  }
};

}  // namespace kestrel::dispatch
