// What stands in the wrong language betrays itself by letters that the right one does not have.
#pragma once

#include <QString>

namespace zemo::test {

// The first letter or sign of the text that its language does not have; null for none.
inline QChar LetterOfAnother(const QString& text, size_t langue) {
  static const QString others[] = {
      QStringLiteral("ñ¿¡ãõáíóúÑÃÕÁÍÓÚ"), QStringLiteral("ñ¿¡ãõáíóúéèêàâçîôûùëïÉÈÀÊÇÁÍÓÚ«»œ"),
      QStringLiteral("ñ¿¡èîûëïœùÑÈÎÛ"), QStringLiteral("ãõçâêôàèîûëïœùÃÕÇÂÊÔÀÈ")};
  for (const QChar letter : text)
    if (others[langue].contains(letter)) return letter;
  return {};
}

}  // namespace zemo::test
