#pragma once

namespace kestrel {

/// The key of the store below which the component keeps its settings.
inline constexpr char kRootKey[] = "Software\\Brindlewick\\Common\\ImageProcessing";

}  // namespace kestrel
