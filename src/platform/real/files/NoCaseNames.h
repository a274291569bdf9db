// Names of files without regard to case, on a file system that regards it.
#pragma once

#include <string>
#include <string_view>

namespace zemo {

// Two names are the same when these are: ASCII letters and the accented letters of Latin-1, in
// UTF-8.
std::string FoldedName(std::string_view name);

// The name of the folder's entry that is `name` itself, else the first in the order of bytes that
// differs from it in case only; empty without one, and when the folder cannot be read. Nothing is
// kept between two calls, so that the answer is never older than the call. Throws nothing.
std::string EntryNamed(const std::string& folder, std::string_view name);

}  // namespace zemo
