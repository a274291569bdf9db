#include "app/ErrorLine.h"

#include <unistd.h>

#include <cstdio>

#include "platform/real/service/JournalStream.h"

namespace zemo {
namespace {

constexpr size_t kMostBytes = 1000;

bool IsControl(unsigned char byte) {
  return byte < 0x20 || byte == 0x7f;
}

// The second byte of U+0080 to U+009F, behind a first one of 0xC2.
bool IsHighControl(unsigned char first, unsigned char second) {
  return first == 0xc2 && second >= 0x80 && second < 0xa0;
}

// In front of the character that would not fit whole.
std::string Cut(std::string text) {
  if (text.size() <= kMostBytes) return text;
  size_t end = kMostBytes;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80) --end;
  text.resize(end);
  return text + " ...";
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (i + 1 < text.size() && IsHighControl(byte, static_cast<unsigned char>(text[i + 1]))) {
      shown += ' ';
      ++i;
    } else {
      shown += IsControl(byte) ? ' ' : text[i];
    }
  }
  return shown;
}

void PrintError(std::string_view text, Gravity gravity) {
  const std::string mark = LeadsIntoJournal(STDERR_FILENO)
                               ? "<" + std::to_string(static_cast<int>(gravity)) + ">"
                               : std::string();
  std::fprintf(stderr, "%szemoradio: %s\n", mark.c_str(), Cut(Printable(text)).c_str());
}

}  // namespace zemo
