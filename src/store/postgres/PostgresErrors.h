// What a PostgreSQL server refuses, as the store tells it.
#pragma once

#include <string>
#include <string_view>

#include "store/Dialect.h"
#include "store/postgres/PostgresResult.h"

namespace zemo {

// Behind the base's name.
inline constexpr char kNewerForm[] =
    " was made by a newer version of the program: this one only reads it";
inline constexpr char kNoStationsBase[] = " is no station's base";

// Throws the StoreError of a refusal. `base` is what it calls the base, `shown` the statement;
// `tables` is asked for the table of a key that is there twice.
[[noreturn]] void ThrowRefusal(const PostgresResult& result, const std::string& base,
                               std::string_view shown, const TableLookup& tables);

}  // namespace zemo
