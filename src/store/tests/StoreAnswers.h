// What a base answered or refused, as a test compares it.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Database.h"
#include "store/RowView.h"
#include "store/StoreError.h"

namespace zemo {

using Strings = std::vector<std::string>;

// The number of the StoreError that `action` throws, 0 for none; its text goes to `text`.
inline int ErrorOf(const std::function<void()>& action, std::string* text = nullptr) {
  try {
    action();
  } catch (const StoreError& error) {
    if (text) *text = error.what();
    EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos) << error.what();
    return error.Number();
  }
  return 0;
}

// The named field of all rows of a query, in their order, Null as "NULL".
inline Strings ColumnOf(Recordset& rows, const std::string& field) {
  Strings values;
  for (; !rows.Eof(); rows.MoveNext()) {
    const Value value = rows.Field(field);
    values.push_back(IsNull(value) ? "NULL" : AsText(value));
  }
  return values;
}

// The one row; where there is another number of them, how many.
inline std::string OnlyOf(const Strings& rows) {
  return rows.size() == 1 ? rows[0] : std::to_string(rows.size()) + " rows";
}

// The first column of a query's rows as texts, a blank behind each; or the error.
inline std::string AnswerOf(Database& base, std::string_view sql, const Values& values = {}) {
  std::string answer;
  const int error = ErrorOf([&] {
    base.ReadRows(sql, values,
                  [&](const RowView& row) { answer += std::string(row.Text(0)) + ' '; });
  });
  return error == 0 ? answer : "error " + std::to_string(error);
}

}  // namespace zemo
