#include "store/postgres/ServerUrl.h"

#include <algorithm>
#include <memory>
#include <string_view>

#include "store/postgres/ClientLibrary.h"

namespace zemo {

namespace {

constexpr char kOnlyEncoded[] = "holds a sign that a URL has only as %XX";

struct FreeOptions {
  void operator()(PQconninfoOption* options) const { Pq().PQconninfoFree(options); }
};
using Options = std::unique_ptr<PQconninfoOption, FreeOptions>;

// Null: it cannot be read. What libpq says of that shows the text, and is lost.
Options Read(const std::string& url) {
  char* message = nullptr;
  Options options(Pq().PQconninfoParse(url.c_str(), &message));
  Pq().PQfreemem(message);
  return options;
}

std::string ValueOf(const Options& options, std::string_view keyword) {
  for (const PQconninfoOption* option = options.get(); option && option->keyword; ++option)
    if (keyword == option->keyword) return option->val ? option->val : "";
  return {};
}

// A password that is written as it is may end for libpq ahead of its end: the rest of it would be a
// host or a base, which are shown.
bool HasOneMeaning(const std::string& url) {
  const size_t begin = url.find("//") + 2;
  const std::string place = url.substr(begin, url.find('?', begin) - begin);
  const size_t at = place.find('@');
  if (at == std::string::npos) return std::count(place.begin(), place.end(), '/') <= 1;
  return place.find('@', at + 1) == std::string::npos && place.find('/') > at &&
         std::count(place.begin(), place.end(), '/') <= 1;
}

bool IsPort(const std::string& port) {
  return port.find_first_not_of("0123456789,") == std::string::npos;
}

}  // namespace

std::string WhyNoServerUrl(const std::string& url) {
  if (!url.starts_with("postgresql://") && !url.starts_with("postgres://"))
    return "holds no URL that begins with postgresql://";
  for (const char c : url)
    if (c <= ' ' || c > '~') return kOnlyEncoded;
  if (!HasOneMeaning(url)) return kOnlyEncoded;
  const Options options = Read(url);
  if (!options) return "holds a URL that cannot be read";
  for (const char* shown : {"host", "dbname"})
    if (ValueOf(options, shown).find('@') != std::string::npos) return kOnlyEncoded;
  if (!IsPort(ValueOf(options, "port"))) return "holds a URL whose port is no number";
  if (ValueOf(options, "dbname").empty() && ValueOf(options, "service").empty())
    return "holds a URL that names no base behind the server";
  return {};
}

std::string ShownServerUrl(const std::string& url) {
  const Options options = Read(url);
  const std::string host = ValueOf(options, "host");
  const std::string service = ValueOf(options, "service");
  const bool socket = host.find('/') != std::string::npos;
  std::string shown = "postgresql://";
  if (const std::string user = ValueOf(options, "user"); !user.empty()) shown += user + '@';
  if (!socket) shown += host.empty() ? ValueOf(options, "hostaddr") : host;
  if (const std::string port = ValueOf(options, "port"); !port.empty()) shown += ':' + port;
  shown += '/' + ValueOf(options, "dbname");
  if (socket) shown += "?host=" + host;
  if (!service.empty()) shown += "?service=" + service;
  return shown;
}

bool HoldsPassword(const std::string& url) {
  const Options options = Read(url);
  return !ValueOf(options, "password").empty() || !ValueOf(options, "sslpassword").empty();
}

}  // namespace zemo
