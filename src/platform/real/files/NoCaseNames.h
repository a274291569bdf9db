// Names of files without regard to case, on a file system that regards it.
#pragma once

#include <string>
#include <string_view>

namespace zemo {

// Two names are the same when these are: ASCII letters and the accented letters of Latin-1, in
// UTF-8.
std::string FoldedName(std::string_view name);

// Of the folder's entries that are the same name as `name` the first in the order of bytes; empty
// without one, and when the folder cannot be read. Throws nothing.
std::string FoldedEntry(const std::string& folder, std::string_view name);

// The entry that is `name` itself, else FoldedEntry. Nothing is kept between two calls, so that the
// answer is never older than the call. Throws nothing.
std::string EntryNamed(const std::string& folder, std::string_view name);

}  // namespace zemo
