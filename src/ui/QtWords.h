// What Qt's own dialogues, menus and buttons say, in the operator's language: our rows
// (ui/QtTexts.h) before Qt's translations, which may be missing, before Qt's English.
#pragma once

#include <QLocale>
#include <QTranslator>
#include <array>

#include "station/LanguageTexts.h"

namespace zemo {

// The country's forms of dates and numbers; French for an unknown language.
QLocale LocaleOf(int langue);

// Qt asks it for as long as it lives; ScreenApplication has one. Thread: the screen's.
class QtWords : public QTranslator {
 public:
  // With Qt's translations of that folder, which are read here and nowhere else.
  explicit QtWords(const QString& folder);
  ~QtWords() override;

  // From now on, also for what Qt shows already. English before, as Qt is.
  void Speak(int langue);

  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char* disambiguation,
                    int n) const override;

 private:
  int langue_ = kEnglish;
  std::array<QTranslator, kLanguages> qts_;  // empty where Qt has none
};

// Has the application's QtWords speak that language; nothing where it has none.
void SpeakQtWords(int langue);

}  // namespace zemo
