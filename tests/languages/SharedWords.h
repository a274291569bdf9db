// The texts that are rightly the same in two languages or more: whoever adds one has looked at it.
#pragma once

#include <QString>
#include <span>
#include <string_view>

namespace zemo::test {

std::span<const std::string_view> SharedWords();
bool IsShared(const QString& text);

}  // namespace zemo::test
