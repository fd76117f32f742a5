#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace kestrel::tools {

/// The text from behind `begin`, which must be there once, to the next `end` or the end of the text.
inline std::string passage(std::string_view text, std::string_view begin, std::string_view end) {
  const std::size_t first = text.find(begin);
  if (first == std::string_view::npos) {
    ADD_FAILURE() << "There is no " << begin;
    return {};
  }
  EXPECT_EQ(text.find(begin, first + 1), std::string_view::npos) << "There is more than one " << begin;
  const std::string_view rest = text.substr(first + begin.size());
  return std::string(rest.substr(0, rest.find(end)));
}

inline std::size_t countOf(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

}  // namespace kestrel::tools
