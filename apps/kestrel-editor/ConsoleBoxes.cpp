#include "ConsoleBoxes.h"

#include <iostream>

namespace kestrel::app {
namespace {

constexpr std::int32_t kButtons = 0x0F;

}  // namespace

void reportFailure(std::string text) {
  for (char& c : text) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  std::cerr << "kestrel-editor: " << text << '\n';
}

std::int32_t ConsoleBoxes::MessageBox(const std::string& text, std::int32_t style, const std::string& title,
                                      WindowHandle /*owner*/) {
  ++shown_;
  reportFailure(title.empty() ? text : title + ": " + text);
  return (style & kButtons) == kBoxOK ? kAnswerOK : kAnswerCancel;
}

std::string ConsoleBoxes::InputBox(const std::string& prompt, const std::string& title,
                                   const std::string& /*defaultText*/, const Point* /*position*/,
                                   WindowHandle /*owner*/) {
  ++shown_;
  reportFailure(title + ": " + prompt);
  return {};
}

void ConsoleBoxes::AboutBox(const std::string& title, const std::string& versionText,
                            const PicturePtr& /*picture*/, WindowHandle /*owner*/) {
  std::cout << title << ' ' << versionText << '\n';
}

}  // namespace kestrel::app
