#include "store/postgres/PostgresValues.h"

#include <cmath>
#include <cstdio>

#include "store/Dialect.h"
#include "store/SqlText.h"

namespace zemo {

namespace {

bool IsWholeReal(double real) {
  return std::trunc(real) == real && std::fabs(real) < 1e15;
}

std::string TextOfValue(const Value& value) {
  const auto* real = std::get_if<double>(&value);
  if (!real) return AsText(value);
  return IsWholeReal(*real) ? std::to_string(static_cast<int64_t>(*real)) : TextOfReal(*real);
}

}  // namespace

// --- Fields ---

std::string NumberColumn(const TableDef& table) {
  for (const Field& field : table.Fields)
    if (field.AutoIncrement && !field.Missing) return field.Name;
  return kHiddenNumber;
}

bool HoldsText(const Field& field) {
  return field.Type == FieldType::kText || field.Type == FieldType::kMemo;
}

// --- Values ---

std::string KindsOf(const Values& values) {
  std::string kinds;
  for (const Value& value : values) {
    if (IsNull(value))
      kinds += '0';
    else if (std::holds_alternative<std::string>(value))
      kinds += KindOf(value) == ValueKind::kWideText ? (ReadsAsNumber(value) ? 'W' : 'w')
                                                     : (ReadsAsNumber(value) ? 'T' : 't');
    else
      kinds += std::holds_alternative<double>(value) ? 'r' : 'n';
  }
  return kinds;
}

bool InForm(PostgresPlace::Form form, const Value& value, std::string& text) {
  if (IsNull(value)) return false;
  const auto* written = std::get_if<std::string>(&value);
  switch (form) {
    case PostgresPlace::kPattern:
      text = PostgresPattern(TextOfValue(value));
      break;
    case PostgresPlace::kText:
      text = TextOfValue(value);
      break;
    case PostgresPlace::kWhole:
      text = std::to_string(AsInt(value));
      break;
    case PostgresPlace::kNumber:
      text = written ? SqlNumber(AsReal(value)) : AsText(value);
      break;
  }
  return true;
}

std::string TextOfReal(double real) {
  char digits[40];
  std::snprintf(digits, sizeof digits, "%.15g", real);
  std::string text = digits;
  if (text.find_first_of(".ein") == std::string::npos) return text + ".0";
  const size_t exponent = text.find('e');
  if (exponent != std::string::npos && text.find('.') == std::string::npos)
    text.insert(exponent, ".0");
  return text;
}

// --- In a statement's text ---

std::string PostgresLiteral(std::string_view text) {
  const bool escaped = text.find('\\') != std::string_view::npos;
  std::string quoted = escaped ? "E'" : "'";
  for (const char c : text) {
    quoted += c;
    if (c == '\'' || c == '\\') quoted += c;
  }
  return quoted + '\'';
}

std::string PostgresPattern(std::string_view written) {
  std::string pattern;
  for (const char c : written) {
    if (c == '%' || c == '_' || c == '\\') pattern += '\\';
    pattern += c == '*' ? '%' : c == '?' ? '_' : c;
  }
  return pattern;
}

}  // namespace zemo
