#include "ui/QtWords.h"

#include <QCoreApplication>
#include <QEvent>
#include <tuple>

#include "ui/QtTexts.h"
#include "ui/ScreenDesktop.h"

namespace zemo {

namespace {

// Of each language; Brazil's words are nearer to Portugal's than English ones, where we have no
// row.
constexpr std::array<const char*, kLanguages> kPackages = {"qtbase_fr", nullptr, "qtbase_pt_BR",
                                                           "qtbase_es"};

size_t KnownLanguage(int langue) {
  return langue >= 0 && langue < static_cast<int>(kLanguages) ? static_cast<size_t>(langue) : 0;
}

}  // namespace

QLocale LocaleOf(int langue) {
  switch (KnownLanguage(langue)) {
    case 1:
      return {QLocale::English, QLocale::UnitedKingdom};
    case 2:
      return {QLocale::Portuguese, QLocale::Portugal};
    case 3:
      return {QLocale::Spanish, QLocale::Spain};
    default:
      return {QLocale::French, QLocale::France};
  }
}

QtWords::QtWords(const QString& folder) {
  for (size_t langue = 0; langue < kLanguages; ++langue)
    if (const char* name = kPackages[langue])
      std::ignore = qts_[langue].load(QString::fromLatin1(name), folder);  // or none is there
  QCoreApplication::installTranslator(this);
}

QtWords::~QtWords() {
  QCoreApplication::removeTranslator(this);
}

void QtWords::Speak(int langue) {
  if (langue == langue_) return;
  langue_ = langue;
  QLocale::setDefault(LocaleOf(langue));
  QEvent changed(QEvent::LanguageChange);
  QCoreApplication::sendEvent(QCoreApplication::instance(), &changed);
}

QString QtWords::translate(const char* context, const char* source, const char* disambiguation,
                           int n) const {
  if (const char* text = QtText(context, source, langue_)) return QString::fromUtf8(text);
  return qts_[KnownLanguage(langue_)].translate(context, source, disambiguation, n);
}

void SpeakQtWords(int langue) {
  if (auto* application = dynamic_cast<ScreenApplication*>(QCoreApplication::instance()))
    application->Words().Speak(langue);
}

}  // namespace zemo
