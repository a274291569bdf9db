// Names of tables, fields and indexes.
#include "store/Names.h"

namespace zemo {

namespace {
char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
}  // namespace

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (Upper(a[i]) != Upper(b[i])) return false;
  }
  return true;
}

std::string UpperName(std::string_view name) {
  std::string upper(name);
  for (char& c : upper) c = Upper(c);
  return upper;
}

std::string QuotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) {
    quoted += c;
    if (c == '"') quoted += c;
  }
  return quoted + '"';
}

std::string StoredIndexName(std::string_view table, std::string_view index) {
  return std::string(table) + '.' + std::string(index);
}

std::string_view IndexNameOf(std::string_view table, std::string_view storedName) {
  const size_t prefix = table.size() + 1;
  if (storedName.size() > prefix && storedName[table.size()] == '.' &&
      SameName(storedName.substr(0, table.size()), table)) {
    return storedName.substr(prefix);
  }
  return storedName;
}

}  // namespace zemo
