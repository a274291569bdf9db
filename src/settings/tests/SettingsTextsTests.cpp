// The words of the settings screen in the four languages.
#include <gtest/gtest.h>

#include <set>

#include "settings/SettingsControls.h"
#include "settings/SettingsTexts.h"

namespace zemo::test {
namespace {

constexpr int kFrench = 0, kEnglish = 1, kPortuguese = 2, kSpanish = 3;
using Texts = std::vector<std::string>;

Texts Tabs(int langue) {
  Texts tabs;
  for (int tab = 0; tab < kSettingsTabs; ++tab)
    tabs.push_back(SettingsCaption("Config." + std::to_string(tab), langue));
  return tabs;
}

TEST(SettingsTexts, TheTabsStandInTheirOrder) {
  EXPECT_EQ(Tabs(kEnglish),
            (Texts{"Preferences", "Point mix", "Levels", "Sound Card", "Spots / News", "Start",
                   "Others", "Communication", "Optimization"}));
  EXPECT_EQ(Tabs(kPortuguese),
            (Texts{"Configurar", "Encadeamento", "Volume", "Áudio", "Pub / Intercalares",
                   "Arranque", "Outros", "Comunicação", "Optimização"}));
  EXPECT_EQ(Tabs(kSpanish),
            (Texts{"Parametraje", "Encadenamientos", "Volúmenes", "Audio", "Pubs / Rúbricas",
                   "Inicio", "Diversos", "Comunicación", "Optimación"}));
}

TEST(SettingsTexts, WordsThatStationsKnowStayToTheLetter) {
  const auto of = [](const char* name) {
    return Texts{SettingsCaption(name, kEnglish), SettingsCaption(name, kPortuguese),
                 SettingsCaption(name, kSpanish)};
  };
  EXPECT_EQ(of("BtnSave"), (Texts{"Save", "Guardar", "Salvaguarda"}));
  EXPECT_EQ(of("BtnInti"), (Texts{"Intitialize", "Inicializar", "Inicio"}));
  EXPECT_EQ(of("OptionOptimise.0"), (Texts{"Disable", "Inactiva", "Inactivo"}));
  EXPECT_EQ(of("OptionOptimise.1"), (Texts{"Enable", "Activa", "Activo"}));
  EXPECT_EQ(SettingsCaption("LblNextStart", kEnglish),
            "Will be efficient to the next starting of Zemo Radio ! ");
}

TEST(SettingsTexts, EveryRowHasItsFourLanguagesAndOneName) {
  std::set<std::string> names;
  for (const Word& word : SettingsCaptions()) {
    EXPECT_TRUE(names.insert(word.name).second) << word.name;
    for (const char* text : word.texts) EXPECT_TRUE(text && *text) << word.name;
  }
  for (const Word& word : SettingsTips())
    for (const char* text : word.texts) EXPECT_TRUE(text && *text) << word.name;
}

TEST(SettingsTexts, EverySettingHasACaptionAndATipInEachLanguage) {
  for (const SettingsControl& control : SettingsControls())
    for (int langue = 0; langue < 4; ++langue) {
      EXPECT_NE(SettingsCaption(control.name, langue), "") << control.name;
      EXPECT_NE(FindWord(SettingsTips(), control.name, langue), nullptr) << control.name;
      if (*control.unit) {
        EXPECT_NE(SettingsCaption("Unit." + std::string(control.unit), langue), "") << control.unit;
      }
    }
}

TEST(SettingsTexts, ATipSaysWhatASettingDoesItsUnitAndItsDefault) {
  EXPECT_EQ(SettingTip(*FindSettingsControl("EnchPub"), kEnglish),
            "Mix point of spots and news (ms). Default: 500");
  EXPECT_EQ(SettingTip(*FindSettingsControl("SpinPurge"), kFrench),
            "Le rapport est purgé de ce qui est plus ancien (jours). Par défaut : 30");
  EXPECT_EQ(SettingTip(*FindSettingsControl("CheckNational"), kEnglish),
            "The national share is kept in a skeleton request. Default: yes");
  EXPECT_EQ(SettingTip(*FindSettingsControl("TexteV"), kSpanish),
            "Texto que muestra el salvapantallas. Por defecto: nada");
}

}  // namespace
}  // namespace zemo::test
