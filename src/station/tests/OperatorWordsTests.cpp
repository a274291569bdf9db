#include <gtest/gtest.h>

#include <set>
#include <string>

#include "station/OnAirElement.h"
#include "station/OperatorWords.h"

namespace zemo {
namespace {

constexpr int kFrench = 0, kEnglish = 1, kPortuguese = 2, kSpanish = 3;

TEST(OperatorWords, ATextOfARoutineIsShownInTheLanguageOfTheStation) {
  EXPECT_EQ(InOperatorsWords("Mode Automatique", kEnglish), "Automatic mode");
  EXPECT_EQ(InOperatorsWords("Mode Automatique", kPortuguese), "Modo automático");
  EXPECT_EQ(InOperatorsWords("Alerte", kSpanish), "Alerta");
}

TEST(OperatorWords, InFrenchTheRoutinesWordsStand) {
  EXPECT_EQ(InOperatorsWords("Mode Automatique", kFrench), "Mode Automatique");
  EXPECT_EQ(InOperatorsWords("Supprimer cette playlist", kFrench), "Supprimer cette playlist");
}

TEST(OperatorWords, WhatIsNoRoutinesTextStaysAsItIs) {
  EXPECT_EQ(InOperatorsWords("Automatique", kEnglish), "Automatique");
  EXPECT_EQ(InOperatorsWords("", kEnglish), "");
  EXPECT_EQ(InOperatorsWords("Pubs de Paris", kEnglish), "Pubs de Paris");
}

TEST(OperatorWords, WhatStandsInThePlaceIsTakenOver) {
  EXPECT_EQ(InOperatorsWords("2.5 '' de buffers", kEnglish), "2.5 s of buffers");
  EXPECT_EQ(InOperatorsWords("Delete Voice Track \n12", kSpanish), "Eliminar el voice track\n12");
  EXPECT_EQ(InOperatorsWords("Grid of theSunday 22 November 2026", kEnglish),
            "Grid of Sunday 22 November 2026");
  EXPECT_EQ(InOperatorsWords("Effacer cette Catégorie %1", kEnglish), "Delete this category %1");
}

TEST(OperatorWords, TheQuestionForANewCategoryNamesIt) {
  const char* question = "Ajouter cette Catégorie à la liste\r\nété";
  EXPECT_EQ(InOperatorsWords(question, kFrench), question);
  EXPECT_EQ(InOperatorsWords(question, kEnglish), "Add this category to the list\r\nété");
  EXPECT_EQ(InOperatorsWords(question, kPortuguese), "Adicionar esta categoria à lista\r\nété");
  EXPECT_EQ(InOperatorsWords(question, kSpanish), "Añadir esta categoría a la lista\r\nété");
}

TEST(OperatorWords, ARefusalOfThePrelistenTellsWhereItsOutputIsChosen) {
  EXPECT_EQ(InOperatorsWords("Impossible d'écouter sur cette sortie audio", kEnglish),
            "The prelisten cannot play on its output.\r\nIt is chosen on the on-air screen: "
            "Options > Settings...");
  EXPECT_EQ(InOperatorsWords("Impossible d'écouter sur cette sortie audio", kFrench),
            "Impossible d'écouter sur cette sortie audio");
}

TEST(OperatorWords, WhatTheLibraryAsksIsInTheWordsOfCards) {
  EXPECT_EQ(InOperatorsWords("Confirmez la suppression de la fiche Morning", kEnglish),
            "Confirm the deletion of Morning");
  EXPECT_EQ(InOperatorsWords("/a.wav\r\nExiste déjà dans la base", kEnglish),
            "/a.wav\r\nhas a card already");
  EXPECT_EQ(InOperatorsWords("Vous avez sélectioné 3 Fichiers audios\r\nVous n'avez plus qu'à "
                             "cliquer sur le menu Ajouter",
                             kEnglish),
            "3 sound files are chosen.\r\nClick Add in the menu to create their cards");
}

TEST(OperatorWords, OnlyATitleThatARoutineGaveIsTranslated) {
  EXPECT_EQ(TitleInWords(Element::kHourPip, "Top Horaire  ", kEnglish), "Hour pip");
  EXPECT_EQ(TitleInWords(Element::kJingle, "Jingle avant Pubs", kSpanish), "Jingle antes de cuñas");
  EXPECT_EQ(TitleInWords(Element::kJingle, "Jingle après Pubs", kEnglish), "Jingle after spots");
  EXPECT_EQ(TitleInWords(Element::kBeginExtract, "Begin Extrait", kEnglish), "Excerpts begin");
  EXPECT_EQ(TitleInWords(Element::kEndPlaylist, "End Playlist  Matin", kEnglish),
            "End of playlist  Matin");
  EXPECT_EQ(TitleInWords(Element::kStartPlaylist, "Start Playlist  Matin", kSpanish),
            "Inicio de playlist  Matin");
  EXPECT_EQ(TitleInWords(Element::kOther, "Secours  song", kEnglish), "Emergency  song");
  EXPECT_EQ(TitleInWords(Element::kOther, "Touche 5", kEnglish), "Touche 5");  // the station's name
  EXPECT_EQ(TitleInWords(Element::kJingle, "Extrait 2", kEnglish), "Extrait 2");
  EXPECT_EQ(TitleInWords(12, "Top Horaire  ", kEnglish), "Top Horaire  ");
  EXPECT_EQ(TitleInWords(Element::kSpot, "Pub", kEnglish), "Pub");  // an advertiser of that name
}

TEST(OperatorWords, ALanguageThatThereIsNotShowsFrench) {
  EXPECT_EQ(InOperatorsWords("Oui", 4), "Oui");
  EXPECT_EQ(InOperatorsWords("Oui", -1), "Oui");
}

TEST(OperatorWords, WhatARoutineSaysInAnotherLanguageIsFrenchOnAFrenchScreen) {
  EXPECT_EQ(InOperatorsWords("Next", kFrench), "Suivant");
  EXPECT_EQ(InOperatorsWords("Begin Extrait", kFrench), "Début d'extraits");
  EXPECT_EQ(InOperatorsWords("no output", kFrench), "aucune sortie");
  EXPECT_EQ(InOperatorsWords("NAO HA MODELOS DEFINIDOS", kSpanish), "NO HAY MODELOS DEFINIDOS");
}

TEST(OperatorWords, ALostDeviceIsToldWithItsReason) {
  EXPECT_EQ(InOperatorsWords("sound device lost (it is gone): the air goes on unheard until it is "
                             "back",
                             kPortuguese),
            "placa de som perdida: ninguém ouve a emissão até ela voltar");
  EXPECT_EQ(InOperatorsWords("sound device lost (x-run): the air goes on unheard until it is back",
                             kFrench),
            "carte son perdue (x-run) : personne n'entend l'antenne jusqu'à son retour");
}

TEST(OperatorWords, EachTextStandsOnceAndKeepsItsPlaceInEveryLanguage) {
  std::set<std::string> seen;
  for (const RoutineText& row : RoutineTexts()) {
    const std::string routine = row.routine;
    EXPECT_TRUE(seen.insert(routine).second) << routine;
    const bool place = routine.find("%1") != std::string::npos;
    for (int langue = kFrench; langue <= kSpanish; ++langue) {
      if (langue != kFrench) {
        EXPECT_NE(row.texts[static_cast<size_t>(langue)], nullptr) << routine;
      }
      const std::string text = InOperatorsWords(routine, langue);
      EXPECT_EQ(text.find("%1") != std::string::npos, place) << text;
    }
  }
}

TEST(OperatorWords, ARefusalTellsEachOfItsReasons) {
  EXPECT_EQ(RefusalInWords("11/22/2026 Pop\tAda Song >> Ecart minutes pas assez important 120 > 119"
                           " >> Ecart nb passage jour atteint 2 > 1",
                           kEnglish),
            "11/22/2026 Pop\tAda Song >> too few minutes since last play 120 > 119"
            " >> plays a day reached 2 > 1");
  EXPECT_EQ(RefusalInWords("Ecart jours pas assez important 2 > 1", kEnglish),
            "too few days since last play 2 > 1");
  EXPECT_EQ(RefusalInWords("x >> Rotation = 0", kSpanish), "x >> Rotation = 0");
}

}  // namespace
}  // namespace zemo
