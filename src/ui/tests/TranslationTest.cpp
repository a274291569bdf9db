#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QWidget>

#include "ui/Translation.h"

namespace zemo::test {
namespace {

constexpr const char* kSame = nullptr;
constexpr ScreenText kControls[] = {
    {"LblOne", "text", {"Un", "One", "Um", "Uno"}},
    {"LblOne", "tip", {"Le premier", kSame, kSame, kSame}},
    {"Led", "tip", {"Contact", "Contact", "Contacto", "Contacto"}},
    {"Combo", "1", {"Jour", "Day", "Dia", "Día"}},
    {"LblGone", "text", {"Rien", "Nothing", "Nada", "Nada"}},
};
constexpr Word kWords[] = {{"Copied", {"Copié : %1", "Copied: %1", "Copiado: %1", "Copiado: %1"}}};
constexpr WindowTexts kTexts = {kControls, kWords};

template <typename Control>
Control* Add(QWidget& window, const char* name) {
  auto* control = new Control(&window);
  control->setObjectName(QString::fromLatin1(name));
  return control;
}

TEST(Translation, FrenchStandsWhereALanguageHasNoTextAndForAnUnknownOne) {
  EXPECT_EQ(Translation(kTexts, 1).Text("LblOne", "text"), QStringLiteral("One"));
  EXPECT_EQ(Translation(kTexts, 3).Text("LblOne", "tip"), QStringLiteral("Le premier"));
  for (const int unknown : {-1, 4})
    EXPECT_EQ(Translation(kTexts, unknown).Text("LblOne", "text"), QStringLiteral("Un"));
}

TEST(Translation, AWordIsTheWindowsElseTheOneThatAllShareElseNothing) {
  const Translation texts(kTexts, 1);
  EXPECT_EQ(texts.Word("Copied", QStringLiteral("Monday")), QStringLiteral("Copied: Monday"));
  EXPECT_EQ(texts.Word("Cancel"), QStringLiteral("Cancel"));
  EXPECT_EQ(texts.Word("Nowhere"), QString());
  EXPECT_EQ(texts.Text("LblTwo", "text"), QString());
}

TEST(Translation, ItPutsTheTextsOnTheControlsOfTheirNamesAndOnAllOfAnArray) {
  QWidget window;
  auto* label = Add<QLabel>(window, "LblOne");
  auto* first = Add<QLabel>(window, "Led0");
  auto* second = Add<QLabel>(window, "Led1");
  auto* combo = Add<QComboBox>(window, "Combo");
  combo->addItems({QStringLiteral("a"), QStringLiteral("b")});
  Translation(kTexts, 2).Apply(window);
  EXPECT_EQ(label->text(), QStringLiteral("Um"));
  EXPECT_EQ(label->toolTip(), QStringLiteral("Le premier"));
  EXPECT_EQ(first->toolTip(), QStringLiteral("Contacto"));
  EXPECT_EQ(second->toolTip(), QStringLiteral("Contacto"));
  EXPECT_EQ(combo->itemText(0), QStringLiteral("a"));
  EXPECT_EQ(combo->itemText(1), QStringLiteral("Dia"));
}

TEST(Translation, ATipHasTheKeysOfItsControlBehindIt) {
  QLabel label;
  label.setProperty("keys", QStringLiteral("F6"));
  SetTip(label, QStringLiteral("Next"));
  EXPECT_EQ(label.toolTip(), QStringLiteral("Next (F6)"));
  EXPECT_EQ(label.accessibleDescription(), QStringLiteral("Next (F6)"));
}

}  // namespace
}  // namespace zemo::test
