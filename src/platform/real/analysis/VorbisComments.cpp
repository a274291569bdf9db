#include "platform/real/analysis/VorbisComments.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <fstream>

namespace zemo {

namespace {

// What stands behind a length of four bytes, from `at` on, which is moved behind it. False where
// less is there than the length says.
bool NextText(const TagLib::ByteVector& bytes, unsigned int& at, TagLib::ByteVector& text) {
  if (bytes.size() - at < 4) return false;
  const unsigned int length = bytes.toUInt(at, false);
  at += 4;
  if (bytes.size() - at < length) return false;
  text = bytes.mid(at, length);
  at += length;
  return true;
}

std::string Capitals(const TagLib::ByteVector& name) {
  std::string capitals(name.data(), name.size());
  std::transform(capitals.begin(), capitals.end(), capitals.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return capitals;
}

constexpr size_t kHeadBytes = 10;  // of an ID3 tag

// Bytes of the ID3 tag that a file may begin with.
int64_t Id3Bytes(const std::array<unsigned char, kHeadBytes>& head) {
  if (head[0] != 'I' || head[1] != 'D' || head[2] != '3') return 0;
  int64_t size = 0;
  for (size_t i = 6; i < kHeadBytes; ++i) size = size << 7 | (head[i] & 0x7F);
  return size + static_cast<int64_t>(kHeadBytes);
}

}  // namespace

TagFields ReadVorbisComments(const TagLib::ByteVector& bytes) {
  TagFields fields;
  TagLib::ByteVector text;
  unsigned int at = 0;
  if (!NextText(bytes, at, text) || bytes.size() - at < 4) return fields;
  const unsigned int count = bytes.toUInt(at, false);
  at += 4;
  for (unsigned int i = 0; i < count && NextText(bytes, at, text); ++i) {
    const int sign = text.find('=');
    if (sign < 0) continue;
    const auto length = static_cast<unsigned int>(sign);
    AddField(fields, Capitals(text.mid(0, length)), FieldText(TextOfBytes(text.mid(length + 1))));
  }
  return fields;
}

TagLib::ByteVector FlacComments(const std::string& path) {
  constexpr int kComments = 4;
  std::ifstream in(path, std::ios::binary);
  std::array<unsigned char, kHeadBytes> head{};
  const auto read = [&](size_t bytes) {
    return static_cast<bool>(
        in.read(reinterpret_cast<char*>(head.data()), static_cast<std::streamsize>(bytes)));
  };
  if (!read(kHeadBytes)) return {};
  in.seekg(Id3Bytes(head));
  if (!read(4) || head[0] != 'f' || head[1] != 'L' || head[2] != 'a' || head[3] != 'C') return {};
  for (bool last = false; !last && read(4);) {
    last = (head[0] & 0x80) != 0;
    const int kind = head[0] & 0x7F;
    const int bytes = head[1] << 16 | head[2] << 8 | head[3];
    if (kind != kComments) {
      in.seekg(bytes, std::ios::cur);
      continue;
    }
    TagLib::ByteVector comments(static_cast<unsigned int>(bytes), 0);
    in.read(comments.data(), bytes);
    return comments.resize(static_cast<unsigned int>(in.gcount()));
  }
  return {};
}

}  // namespace zemo
