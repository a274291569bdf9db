#include "platform/real/serial/LineSetting.h"

#include <charconv>
#include <string>
#include <vector>

namespace zemo {

namespace {

std::vector<std::string> FieldsOf(std::string_view text) {
  std::vector<std::string> fields(1);
  for (const char letter : text) {
    if (letter == ',')
      fields.emplace_back();
    else if (letter != ' ' && letter != '\t')
      fields.back() += letter;
  }
  return fields;
}

std::optional<int32_t> WholeNumber(const std::string& field) {
  int32_t number = 0;
  const char* end = field.data() + field.size();
  const auto [behind, error] = std::from_chars(field.data(), end, number);
  if (error != std::errc() || behind != end) return std::nullopt;
  return number;
}

std::optional<Parity> ParityOf(const std::string& field) {
  if (field == "N" || field == "n") return Parity::kNone;
  if (field == "E" || field == "e") return Parity::kEven;
  if (field == "O" || field == "o") return Parity::kOdd;
  if (field == "M" || field == "m") return Parity::kMark;
  if (field == "S" || field == "s") return Parity::kSpace;
  return std::nullopt;
}

std::optional<StopBits> StopBitsOf(const std::string& field) {
  if (field == "1") return StopBits::kOne;
  if (field == "1.5") return StopBits::kOneAndHalf;
  if (field == "2") return StopBits::kTwo;
  return std::nullopt;
}

}  // namespace

std::optional<LineParameters> ParseLineSetting(std::string_view setting) {
  const std::vector<std::string> fields = FieldsOf(setting);
  if (fields.size() != 4) return std::nullopt;
  const auto baud = WholeNumber(fields[0]);
  const auto parity = ParityOf(fields[1]);
  const auto dataBits = WholeNumber(fields[2]);
  const auto stopBits = StopBitsOf(fields[3]);
  if (!baud || *baud <= 0 || !parity || !dataBits || *dataBits < 5 || *dataBits > 8 || !stopBits)
    return std::nullopt;
  return LineParameters{*baud, *parity, *dataBits, *stopBits};
}

}  // namespace zemo
