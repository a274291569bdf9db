// All screens of the program, each in its four languages.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QRegularExpression>
#include <QTranslator>
#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "languages/EveryScreen.h"
#include "languages/LanguageLetters.h"
#include "languages/ProgramTexts.h"
#include "languages/SharedWords.h"
#include "languages/ShownTexts.h"
#include "ui/ScreenDesktop.h"
#include "ui/tests/WindowSweep.h"

namespace zemo::test {
namespace {

using Words = std::set<QString>;

// Of three letters and more, in small ones.
Words WordsOf(const QString& text) {
  Words words;
  QString word;
  for (const QChar letter : text + QChar(u' ')) {
    if (letter.isLetter()) {
      word += letter.toLower();
      continue;
    }
    if (word.size() >= 3) words.insert(word);
    word.clear();
  }
  return words;
}

// Of the shared texts those that are one word; the others are only shared as a whole.
const Words& SharedOnes() {
  static const Words shared = [] {
    Words words;
    for (const std::string_view text : SharedWords())
      if (text.find(' ') == std::string_view::npos)
        words.merge(WordsOf(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))));
    return words;
  }();
  return shared;
}

// The words of one language that are none of another: a row says them in the one and otherwise in
// the other, no row the other way round, and no two rows in both.
Words ForeignWords(size_t from, size_t to) {
  Words foreign, own, once;
  for (const TextRow& row : ProgramTexts()) {
    if (!row.texts[from] || !row.texts[to]) continue;
    const Words there = WordsOf(QString::fromUtf8(row.texts[from])),
                here = WordsOf(QString::fromUtf8(row.texts[to]));
    for (const QString& word : there)
      if (!here.contains(word)) foreign.insert(word);
    for (const QString& word : here)
      if (!there.contains(word) || !once.insert(word).second) own.insert(word);
  }
  for (const Words& allowed : {own, SharedOnes()})
    for (const QString& word : allowed) foreign.erase(word);
  return foreign;
}

// Of every language but the one of the screen; Portuguese and Spanish have too many in common.
Words ForeignOn(size_t langue) {
  Words foreign;
  for (size_t other = 0; other < kLanguages; ++other)
    if (other != langue && !(other >= 2 && langue >= 2)) foreign.merge(ForeignWords(other, langue));
  return foreign;
}

// What of a text is the program's: no text of the station, path, file, key or name of this machine,
// nor a size of paper.
QString ProgramsPart(const ShownText& shown) {
  static const QRegularExpression ours(QStringLiteral("¤[^¤]*¤( \\*)?(\\.\\w+)?")),
      path(QStringLiteral("(?<!\\w)/\\S+")), file(QStringLiteral("^\\S+\\.\\w+$")),
      keys(QStringLiteral("^(\\w+\\+)+[\\w .]+$"));
  QString text = shown.text;
  text.remove(ours).remove(path).remove(file).remove(keys);
  const bool none = text == QDir::home().dirName() ||
                    shown.where.find("pageSizeCombo") != std::string::npos || WordsOf(text).empty();
  return none ? QString() : text;
}

bool IsSharedInAll(const QString& text) {
  const Words words = WordsOf(text);
  return IsShared(text) || std::all_of(words.begin(), words.end(), [](const QString& word) {
           return SharedOnes().contains(word);
         });
}

class InLanguage : public testing::TestWithParam<int> {};

TEST_P(InLanguage, NoScreenHasAWordOfAnotherLanguage) {
  const auto langue = static_cast<size_t>(GetParam());
  const Words foreign = ForeignOn(langue);
  std::set<std::string> told;
  EveryScreen(GetParam()).Walk(1280, 800, [&](const std::string& name, QWidget& window) {
    for (const ShownText& shown : ShownTexts(window)) {
      const QString text = ProgramsPart(shown);
      if (IsShared(text)) continue;
      if (const QChar letter = LetterOfAnother(text, langue); !letter.isNull())
        ADD_FAILURE() << name << ": " << shown.where << ": \"" << text.toStdString()
                      << "\" has the letter \"" << QString(letter).toStdString() << '"';
      for (const QString& word : WordsOf(text))
        if (foreign.contains(word) && told.insert(shown.text.toStdString()).second)
          ADD_FAILURE() << name << ": " << shown.where << ": \"" << shown.text.toStdString()
                        << "\" has the word \"" << word.toStdString() << '"';
    }
  });
}

// Of the dialogues, for a person to look at; the windows' own tests keep theirs.
void KeepPicture(const std::string& name, QWidget& window, int langue) {
  if (!qobject_cast<const QDialog*>(&window) || name.starts_with("box: ")) return;
  const QString path = QStringLiteral(ZEMO_SCREENSHOTS "/dialogue-%1-%2.png")
                           .arg(QString::fromLatin1(kLanguageNames[langue]),
                                QString::fromStdString(name).replace(u' ', u'-').remove(u','));
  EXPECT_TRUE(window.grab().save(path)) << path.toStdString();
}

TEST_P(InLanguage, NoTextIsCut) {
  std::set<std::string> told;
  for (const WindowSize& size : kWindowSizes)
    EveryScreen(GetParam())
        .Walk(size.width, size.height, [&](const std::string& name, QWidget& window) {
          if ((window.width() > size.width || window.height() > size.height) &&
              told.insert(name).second)
            ADD_FAILURE() << name << " needs " << window.width() << " x " << window.height()
                          << " at " << size.width;
          if (size.width == kWindowSizes[0].width) KeepPicture(name, window, GetParam());
          for (const std::string& cut : CutTexts(window))
            if (told.insert(name + cut).second)
              ADD_FAILURE() << name << " at " << size.width << ": " << cut;
        });
}

// Asked where our rows and Qt's translations have nothing.
class Missed : public QTranslator {
 public:
  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char*, int) const override {
    // Of the keys those that the program speaks of have their rows.
    const std::string_view of = context;
    if (of != "QShortcut" && of != "QGuiApplication" && !WordsOf(QString::fromUtf8(source)).empty())
      texts.insert(std::string(context) + ": " + source);
    return {};
  }
  mutable std::set<std::string> texts;
};

TEST_P(InLanguage, NoTextOfQtsIsWithoutATranslation) {
  if (GetParam() == kEnglish) GTEST_SKIP() << "English is Qt's own";
  if (!QFileInfo::exists(QLibraryInfo::path(QLibraryInfo::TranslationsPath) + "/qtbase_fr.qm"))
    GTEST_SKIP() << "qt6-translations-l10n is not installed";
  Missed missed;
  QtWords& words = dynamic_cast<ScreenApplication&>(*QCoreApplication::instance()).Words();
  QCoreApplication::removeTranslator(&words);
  QCoreApplication::installTranslator(&missed);
  QCoreApplication::installTranslator(&words);  // which is asked first
  words.Speak(GetParam());
  EveryScreen(GetParam()).Walk(1280, 800, [](const std::string&, QWidget&) {});
  QCoreApplication::removeTranslator(&missed);
  for (const std::string& text : missed.texts) ADD_FAILURE() << text;
}

INSTANTIATE_TEST_SUITE_P(EveryScreen, InLanguage, testing::Values(0, 1, 2, 3),
                         [](const auto& language) {
                           return std::string(kLanguageNames[language.param]);
                         });

TEST(EveryScreen, SaysNothingInOneLanguageForAll) {
  using Seen = std::map<QString, std::string>;  // where, by text
  std::map<std::string, std::array<Seen, kLanguages>> screens;
  for (size_t langue = 0; langue < kLanguages; ++langue)
    EveryScreen(static_cast<int>(langue))
        .Walk(1280, 800, [&](const std::string& name, QWidget& window) {
          for (const ShownText& shown : ShownTexts(window))
            if (const QString text = ProgramsPart(shown); !text.isEmpty())
              screens[name][langue].emplace(text, shown.where);
        });
  EXPECT_GT(screens.size(), 40U);
  std::set<QString> told;
  for (const auto& [name, seen] : screens)
    for (const auto& [text, where] : seen[0]) {
      const bool everywhere = std::all_of(seen.begin(), seen.end(),
                                          [&](const Seen& texts) { return texts.contains(text); });
      if (everywhere && !IsSharedInAll(text) && told.insert(text).second)
        ADD_FAILURE() << name << ": " << where << ": \"" << text.toStdString()
                      << "\" in all languages";
    }
}

}  // namespace
}  // namespace zemo::test
