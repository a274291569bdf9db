// The tables of texts: each row has each language, and each language its own words.
#include <gtest/gtest.h>

#include <QString>
#include <utility>

#include "languages/LanguageLetters.h"
#include "languages/ProgramTexts.h"
#include "languages/SharedWords.h"
#include "ui/tests/WindowSweep.h"

namespace zemo::test {
namespace {

bool HasWords(const QString& text) {
  QString plain = text;
  plain.remove(QStringLiteral("%1"));
  int letters = 0;
  for (const QChar letter : plain) letters += letter.isLetter();
  return letters > 1;
}

TEST(TextRows, HaveATextInEachLanguage) {
  for (const TextRow& row : ProgramTexts())
    for (size_t langue = 0; langue < kLanguages; ++langue)
      EXPECT_TRUE(row.texts[langue] && *row.texts[langue])
          << row.name << " has nothing in " << kLanguageNames[langue];
}

// Portuguese and Spanish have too many words in common to be held apart so.
TEST(TextRows, DifferBetweenLanguagesUnlessTheWordIsShared) {
  constexpr std::pair<size_t, size_t> kPairs[] = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}};
  for (const TextRow& row : ProgramTexts())
    for (const auto& [one, other] : kPairs) {
      if (!row.texts[one] || !row.texts[other]) continue;
      const QString text = QString::fromUtf8(row.texts[one]);
      if (text != QString::fromUtf8(row.texts[other]) || !HasWords(text)) continue;
      EXPECT_TRUE(IsShared(text)) << row.name << ": \"" << row.texts[one] << "\" in "
                                  << kLanguageNames[one] << " and " << kLanguageNames[other];
    }
}

TEST(TextRows, HaveTheLettersOfTheirLanguage) {
  for (const TextRow& row : ProgramTexts())
    for (size_t langue = 0; langue < kLanguages; ++langue) {
      const char* text = row.texts[langue] ? row.texts[langue] : "";
      EXPECT_TRUE(LetterOfAnother(QString::fromUtf8(text), langue).isNull())
          << row.name << ": " << text << " in " << kLanguageNames[langue];
    }
}

}  // namespace
}  // namespace zemo::test
