// A query of the dialect cut into words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zemo {

enum class TokenKind { kWord, kName, kNumber, kText, kValue, kSymbol };

struct Token {
  TokenKind kind = TokenKind::kSymbol;
  // A name or a text literal without its quotes; a value's place as "?1", the number that it has
  // from left to right; all others as written.
  std::string text;
  int depth = 0;       // parentheses around it; an opening one counts as outside of itself
  bool spaced = true;  // a blank stands before it

  bool Is(std::string_view word) const;  // a word (any case) or a symbol; never a literal or a name
  bool IsName() const { return kind == TokenKind::kWord || kind == TokenKind::kName; }
};

// Throws StoreError (kErrSyntax) for a quote or bracket that is not closed.
std::vector<Token> CutQuery(std::string_view query);

// The words as SQL for SQLite.
std::string JoinTokens(const std::vector<Token>& tokens);

}  // namespace zemo
