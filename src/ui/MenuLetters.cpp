#include "ui/MenuLetters.h"

#include <QAction>
#include <QSet>
#include <QWidget>

namespace zemo {

namespace {

// Where the letter of its own stands in the text; -1 where every letter is taken.
qsizetype FreeLetter(const QString& text, const QSet<QChar>& taken) {
  const auto isFree = [&](qsizetype place) {
    return text[place].isLetter() && !taken.contains(text[place].toLower());
  };
  for (qsizetype place = 0; place < text.size(); ++place)
    if ((place == 0 || text[place - 1].isSpace()) && isFree(place)) return place;
  for (qsizetype place = 0; place < text.size(); ++place)
    if (isFree(place)) return place;
  return -1;
}

}  // namespace

void GiveMenuLetters(const QWidget& menu) {
  QSet<QChar> taken;
  for (QAction* entry : menu.actions()) {
    QString text = entry->text();
    const qsizetype given = text.indexOf(u'&');
    const qsizetype place = given >= 0 ? given + 1 : FreeLetter(text, taken);
    if (place < 0 || place >= text.size()) continue;
    taken.insert(text[place].toLower());
    if (given < 0) entry->setText(text.insert(place, u'&'));
  }
}

}  // namespace zemo
