// The lock's dialogue, its menus and its file.
#include "settings/LockDialogue.h"
#include "settings/SideFiles.h"
#include "settings/tests/SettingsStation.h"

namespace zemo::test {
namespace {

struct LockDialogue : SettingsStation {
  void LockWith(const std::string& password) {
    std::string text = password;
    LoadSavePassword(station, "Save", text);
    on.seen.clear();
  }
  void SpeaksLangue(const std::string& langue) {
    on.Set("Langue", langue);
    station.base.CheckCnf();
  }
  // The text of the box shown last.
  std::string Told() {
    const auto messages = on.Events("message");
    return messages.empty() ? "(nothing)" : messages.back()["text"];
  }
  zemo::LockDialogue& dialogue = station.lockDialogue;
};

TEST_F(LockDialogue, WithoutALockAsksForANewPasswordAtOnce) {
  Lock::MnuPasseWord_Click(station);
  EXPECT_TRUE(dialogue.open);
  EXPECT_EQ(dialogue.Title, "Nouveau mot de passe");
  EXPECT_EQ(dialogue.Label, "Mot de passe");
  EXPECT_EQ(Told(), " Effacez le mot de passe pour désactiver la protection ");
  Lock::BtnOk_Click(station, "abc");
  EXPECT_FALSE(dialogue.open);
  EXPECT_TRUE(station.lists.Locked);
  EXPECT_EQ(MachineFile("ZemoPasseWord.Ini"), "#TRUE#,\"abc\"\r\n");
}

TEST_F(LockDialogue, LocksTheScreenAndOpensIt) {
  LockWith("abc");
  EXPECT_TRUE(station.engine.ScreenLocked);
  LockWith("");
  EXPECT_FALSE(station.engine.ScreenLocked);
}

TEST_F(LockDialogue, IsInForceFromTheStart) {
  LockWith("abc");
  station.lists.Locked = false;
  std::string password;
  LoadSavePassword(station, "Load", password);
  EXPECT_TRUE(station.engine.ScreenLocked);
}

TEST_F(LockDialogue, TheRightPasswordLeadsToTheNewOneAndAnEmptyOneUnlocks) {
  LockWith("abc");
  Lock::MnuPasseWord_Click(station);
  EXPECT_EQ(dialogue.Title, "Entrez le mot de passe");
  EXPECT_EQ(Told(), "(nothing)");
  Lock::BtnOk_Click(station, "abc");
  EXPECT_TRUE(dialogue.open);
  EXPECT_EQ(dialogue.Title, "Nouveau mot de passe");
  EXPECT_TRUE(station.lists.Locked);
  Lock::BtnOk_Click(station, "");
  EXPECT_FALSE(dialogue.open);
  EXPECT_FALSE(station.lists.Locked);
  EXPECT_EQ(MachineFile("ZemoPasseWord.Ini"), "#FALSE#,\"\"\r\n");
}

TEST_F(LockDialogue, AnyOtherTextClosesItAndLeavesTheLockOn) {
  LockWith("abc");
  for (const char* typed : {"", "ABC", "abc ", "' OR '1'='1"}) {
    Lock::MnuPasseWord_Click(station);
    Lock::BtnOk_Click(station, typed);
    EXPECT_FALSE(dialogue.open) << typed;
    EXPECT_TRUE(station.lists.Locked) << typed;
    EXPECT_EQ(MachineFile("ZemoPasseWord.Ini"), "#TRUE#,\"abc\"\r\n");
  }
  Lock::BtnOk_Click(station, "abc");  // of a closed dialogue
  EXPECT_TRUE(station.lists.Locked);
}

TEST_F(LockDialogue, SpeaksTheLanguageOfTheStation) {
  const struct {
    const char* langue;
    const char* enter;
    const char* label;
    const char* box;
    const char* asksNew;
  } cases[] = {
      {"1", "Enter the password", "Password", " Delete password for disable protection ",
       "New Password"},
      {"2", "Nova palavra-passe", "Palavra-passe",
       " Apague a palavra-passe para desativar a proteção ", "Escrever nova palavra-passe"},
      {"3", "Nuevo código secreto", "Código secreto",
       " Borre el código secreto para desactivar la protección ", "Escribir nuevo código secreto"},
      {"9", "", "Mot de passe", "", ""}};
  for (const auto& one : cases) {
    LockWith("abc");
    SpeaksLangue(one.langue);
    Lock::MnuPasseWord_Click(station);
    EXPECT_EQ(dialogue.Title, one.enter);
    EXPECT_EQ(dialogue.Label, one.label);
    Lock::BtnOk_Click(station, "abc");
    EXPECT_EQ(Told(), one.box);
    EXPECT_EQ(dialogue.Title, one.asksNew);
  }
}

TEST_F(LockDialogue, APasswordWithQuotesAndCommasOpensItAgain) {
  const std::string password = "l'é\"t\"é, #FALSE#";
  Lock::MnuPasseWord_Click(station);
  Lock::BtnOk_Click(station, password);
  std::string read;
  LoadSavePassword(station, "Load", read);
  EXPECT_EQ(read, password);
  EXPECT_TRUE(LockOpensWith(station, password));
}

}  // namespace
}  // namespace zemo::test
