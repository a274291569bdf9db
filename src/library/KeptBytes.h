// Numbers and texts one behind the other, for files that only this machine reads again: numbers as
// the processor has them, texts behind their length.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

namespace zemo {

// What is read is not what was written.
struct OddBytes {};

template <typename Number>
void AddNumber(std::string& bytes, Number number) {
  static_assert(std::is_trivially_copyable_v<Number>);
  bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

inline void AddText(std::string& bytes, std::string_view text) {
  AddNumber(bytes, static_cast<uint32_t>(text.size()));
  bytes += text;
}

// Every reading throws OddBytes where there are not as many bytes.
class ByteReader {
 public:
  explicit ByteReader(std::string_view bytes) : left_(bytes) {}

  std::string_view Bytes(uint64_t count) {
    if (count > left_.size()) throw OddBytes();
    const std::string_view taken = left_.substr(0, static_cast<size_t>(count));
    left_.remove_prefix(taken.size());
    return taken;
  }
  template <typename Number>
  Number Take() {
    static_assert(std::is_arithmetic_v<Number>);
    Number number;
    std::memcpy(&number, Bytes(sizeof number).data(), sizeof number);
    return number;
  }
  std::string_view Text() { return Bytes(Take<uint32_t>()); }  // valid as long as the bytes
  bool AtEnd() const { return left_.empty(); }

 private:
  std::string_view left_;
};

}  // namespace zemo
