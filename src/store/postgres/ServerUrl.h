// The URL of a base on a server. One may hold a password, which nobody is shown.
#pragma once

#include <string>

namespace zemo {

// What is wrong with it, which tells nothing of the text itself; empty: it names a server's base.
std::string WhyNoServerUrl(const std::string& url);

// Host, port, user and base of such a URL, as a URL; nothing else of it.
std::string ShownServerUrl(const std::string& url);

bool HoldsPassword(const std::string& url);

}  // namespace zemo
