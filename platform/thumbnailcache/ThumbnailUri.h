#pragma once

#include <filesystem>
#include <string>

namespace kestrel::thumbnails {

/// The URI of a local file by which programs of the desktop name its thumbnail: absolute, without "." and
/// "..", symbolic links kept, escaped as GLib's `g_filename_to_uri` does. `path` must be absolute; its bytes
/// need not be UTF-8.
std::string uriOf(const std::filesystem::path& path);

/// The last part of `uriOf`, which names a thumbnail in a shared repository.
std::string uriOfName(const std::filesystem::path& path);

/// Name of the entry of a URI: its MD5 digest in hexadecimal digits, and ".png".
std::filesystem::path entryName(const std::string& uri);

}  // namespace kestrel::thumbnails
