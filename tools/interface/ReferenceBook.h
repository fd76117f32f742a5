#pragma once

#include <string>

namespace kestrel::tools {

/// The public interface as a document in Markdown: each class with its properties, methods and events, each
/// enumeration, and an index of the members.
std::string referenceBook();

}  // namespace kestrel::tools
