// Cutting a query into words and joining them again. Text literals come in '...' or "...", names
// that are no plain words in [...].
#include "store/DialectTokens.h"

#include <utility>

#include "store/Names.h"
#include "store/SqlText.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsWordStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}
bool IsWordPart(char c) {
  return IsWordStart(c) || IsDigit(c) || c == '$';
}

class Cutter {
 public:
  explicit Cutter(std::string_view query) : query_(query) {}

  std::vector<Token> Cut() {
    for (;;) {
      const size_t before = at_;
      while (at_ < query_.size() && IsBlank(query_[at_])) ++at_;
      if (at_ == query_.size()) return std::move(tokens_);
      const bool spaced = at_ > before;
      Token token = Next();
      token.spaced = spaced;
      tokens_.push_back(std::move(token));
    }
  }

 private:
  Token Next() {
    const char c = query_[at_];
    if (c == '\'' || c == '"') return {TokenKind::kText, Quoted(c), depth_};
    if (c == '[') return {TokenKind::kName, Quoted(']'), depth_};
    if (IsWordStart(c)) return {TokenKind::kWord, While(IsWordPart), depth_};
    if (IsDigit(c) || (c == '.' && IsDigit(Peek(1)))) {
      return {TokenKind::kNumber, Number(), depth_};
    }
    if (c == '?') {
      ++at_;
      return {TokenKind::kValue, '?' + std::to_string(++values_), depth_};
    }
    return {TokenKind::kSymbol, Symbol(), depth_};
  }

  char Peek(size_t ahead) const { return at_ + ahead < query_.size() ? query_[at_ + ahead] : '\0'; }

  template <typename Test>
  std::string While(Test test) {
    const size_t from = at_;
    while (at_ < query_.size() && test(query_[at_])) ++at_;
    return std::string(query_.substr(from, at_ - from));
  }

  // What stands up to the closing sign, which is itself when doubled.
  std::string Quoted(char close) {
    std::string text;
    for (++at_; at_ < query_.size(); ++at_) {
      if (query_[at_] == close) {
        if (Peek(1) != close) {
          ++at_;
          return text;
        }
        ++at_;
      }
      text += query_[at_];
    }
    throw StoreError(kErrSyntax, std::string("a query holds a ") + (close == ']' ? '[' : close) +
                                     " that is not closed: " + std::string(query_.substr(0, 200)));
  }

  std::string Number() {
    const auto digit = [](char c) { return IsDigit(c) || c == '.'; };
    std::string number = While(digit);
    const bool isExponent =
        (Peek(0) == 'e' || Peek(0) == 'E') &&
        (IsDigit(Peek(1)) || ((Peek(1) == '-' || Peek(1) == '+') && IsDigit(Peek(2))));
    if (isExponent) {
      number += query_.substr(at_, 2);
      at_ += 2;
      number += While(IsDigit);
    }
    return number;
  }

  std::string Symbol() {
    const std::string_view two = query_.substr(at_, 2);
    for (const std::string_view known : {"<>", "<=", ">=", "!=", "==", "||"}) {
      if (two == known) {
        at_ += 2;
        return std::string(known);
      }
    }
    const char c = query_[at_++];
    if (c == '(') ++depth_;
    if (c == ')' && depth_ > 0) --depth_;
    return std::string(1, c);
  }

  std::string_view query_;
  size_t at_ = 0;
  int depth_ = 0;
  int values_ = 0;  // places of values so far
  std::vector<Token> tokens_;
};

}  // namespace

bool Token::Is(std::string_view word) const {
  return (kind == TokenKind::kWord || kind == TokenKind::kSymbol) && SameName(text, word);
}

std::vector<Token> CutQuery(std::string_view query) {
  return Cutter(query).Cut();
}

std::string JoinTokens(const std::vector<Token>& tokens) {
  std::string sql;
  for (const Token& token : tokens) {
    // Two signs that were apart, or that stood for themselves, must not become a comment.
    const bool comment =
        !sql.empty() && !token.text.empty() && token.kind == TokenKind::kSymbol &&
        ((sql.back() == '-' && token.text == "-") || (sql.back() == '/' && token.text == "*"));
    if (!sql.empty() && (token.spaced || comment)) sql += ' ';
    if (token.kind == TokenKind::kText) {
      sql += '\'' + SqlQuoted(token.text) + '\'';
    } else if (token.kind == TokenKind::kName) {
      sql += QuotedName(token.text);
    } else {
      sql += token.text;
    }
  }
  return sql;
}

}  // namespace zemo
