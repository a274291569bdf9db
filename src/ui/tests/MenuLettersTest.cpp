#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <QStringList>

#include "ui/MenuLetters.h"

namespace zemo {
namespace {

QStringList Lettered(const QStringList& entries) {
  QMenu menu;
  for (const QString& entry : entries) menu.addAction(entry);
  GiveMenuLetters(menu);
  QStringList texts;
  for (const QAction* entry : menu.actions()) texts << entry->text();
  return texts;
}

TEST(MenuLetters, AnEntryHasTheFirstLetterOfAWordThatNoneAheadOfItHas) {
  EXPECT_EQ(
      Lettered({QStringLiteral("List"), QStringLiteral("Listen to it"), QStringLiteral("Lists")}),
      (QStringList{QStringLiteral("&List"), QStringLiteral("Listen &to it"),
                   QStringLiteral("L&ists")}));
}

TEST(MenuLetters, OneThatAnEntryHasAlreadyIsKept) {
  EXPECT_EQ(Lettered({QStringLiteral("E&dit"), QStringLiteral("Delete")}),
            (QStringList{QStringLiteral("E&dit"), QStringLiteral("D&elete")}));
}

TEST(MenuLetters, AnEntryWithoutAFreeLetterGoesWithoutOne) {
  EXPECT_EQ(Lettered({QStringLiteral("A"), QStringLiteral("a"), QString()}),
            (QStringList{QStringLiteral("&A"), QStringLiteral("a"), QString()}));
}

}  // namespace
}  // namespace zemo
