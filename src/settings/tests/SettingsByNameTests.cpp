// The settings by name, as the terminal shows and changes them.
#include <algorithm>
#include <filesystem>

#include "settings/SettingsByName.h"
#include "settings/tests/SettingsStation.h"

namespace zemo::test {
namespace {

struct SettingsByName : SettingsStation {
  std::string Value(const std::string& name) {
    const auto setting = GetSetting(station, devices, name);
    return setting ? setting->value : "(none)";
  }
  std::optional<std::string> SetTo(const std::string& name, const std::string& value) {
    return SetSetting(station, devices, name, value);
  }
};

TEST_F(SettingsByName, AreAllListedWithTheirMeaning) {
  const auto settings = ListSettings(station, devices);
  EXPECT_EQ(settings.size(), 79U);  // 53 controls, 3 bare fields, 2 lists, 3 lists of 7 days
  for (const NamedSetting& setting : settings) {
    EXPECT_FALSE(setting.meaning.empty()) << setting.name;
    EXPECT_FALSE(setting.store.empty()) << setting.name;
    EXPECT_EQ(std::count_if(settings.begin(), settings.end(),
                            [&](const NamedSetting& other) { return other.name == setting.name; }),
              1)
        << setting.name;
  }
  const auto fade = GetSetting(station, devices, "FadeOut");
  ASSERT_TRUE(fade);
  EXPECT_EQ(fade->name, "HsFadeOut");
  EXPECT_EQ(fade->value, "1600");
  EXPECT_EQ(fade->unit, "ms");
  EXPECT_EQ(fade->lowest, 0);
  EXPECT_EQ(fade->highest, 32767);
  EXPECT_EQ(fade->byDefault, "1600");
}

TEST_F(SettingsByName, AreSetByEitherName) {
  EXPECT_EQ(SetTo("fadeout", "1500"), std::nullopt);
  EXPECT_EQ(Stored("FadeOut"), "1500");
  EXPECT_EQ(SetTo("HsFadeOut", "1400"), std::nullopt);
  EXPECT_EQ(Value("FadeOut"), "1400");
  EXPECT_EQ(SetTo("CheckPub", "on"), std::nullopt);
  EXPECT_EQ(Stored("PrioritePubs"), "1");
  EXPECT_EQ(SetTo("AutoPlay", "yes"), std::nullopt);
  EXPECT_EQ(on.localValues.Get("AutoPlay"), "1");
  EXPECT_EQ(SetTo("PlayCombo", "-1"), std::nullopt);
  EXPECT_EQ(MachineFile("ZemoAudio.Ini"), "-1,-1\r\n");
}

TEST_F(SettingsByName, ChangeNothingElse) {
  on.Set("JingleAvantPubs", "'a'");
  EXPECT_EQ(SetTo("EnchDef", "1500"), std::nullopt);
  EXPECT_EQ(StationFile("StartStop.5"), "(no file)");
  EXPECT_EQ(StationFile("Langue.Txt"), "(no file)");
  EXPECT_EQ(MachineFile("ZemoAudio.Ini"), "(no file)");
  EXPECT_EQ(Stored("JingleAvantPubs"), "a");
  EXPECT_EQ(SetTo("Langue", "3"), std::nullopt);
  EXPECT_EQ(StationFile("Langue.Txt"), "3\r\n");
}

TEST_F(SettingsByName, TakeWhatHangsOnThemWithThem) {
  SetTo("CheckInstrumental", "1");
  SetTo("SpinOptimise", "55");
  EXPECT_EQ(SetTo("CheckPubToph", "1"), std::nullopt);
  EXPECT_EQ(Stored("PubAvecTopH"), "1");
  EXPECT_EQ(Stored("Instrumental"), "0");
  EXPECT_EQ(Stored("HOptimise"), "48");
}

TEST_F(SettingsByName, ThatHangTogetherAreStoredTogetherOrNotAtAll) {
  SetTo("CheckInstrumental", "1");
  SetTo("SpinOptimise", "55");
  for (const char* column : {"HOptimise", "PubAvecTopH", "Instrumental"}) {
    on.Native(std::string("CREATE TRIGGER full BEFORE UPDATE ON Cnf WHEN NEW.") + column +
              " <> OLD." + column + " BEGIN SELECT RAISE(ABORT, 'no room'); END");
    EXPECT_THROW(SetTo("CheckPubToph", "1"), StoreError) << column;
    EXPECT_EQ(Stored("PubAvecTopH"), "0") << column;
    EXPECT_EQ(Stored("Instrumental"), "1") << column;
    EXPECT_EQ(Stored("HOptimise"), "55") << column;
    on.Native("DROP TRIGGER full");
    Load();  // the screen as it is stored
  }
}

TEST_F(SettingsByName, RefuseWhatTheyCannotTake) {
  EXPECT_EQ(SetTo("EnchDef", "soon"), "EnchDef: \"soon\" is no whole number");
  EXPECT_EQ(SetTo("EnchDef", "1.5"), "EnchDef: \"1.5\" is no whole number");
  EXPECT_EQ(SetTo("EnchDef", ""), "EnchDef: \"\" is no whole number");
  EXPECT_EQ(SetTo("EnchDef", "99999"), "EnchDef: \"99999\" is outside 0 to 32767 ms");
  EXPECT_EQ(SetTo("JingleCode", "1"), "JingleCode is not set by hand");
  EXPECT_EQ(SetTo("Nothing", "1"), "there is no setting Nothing");
  EXPECT_EQ(SetTo("Topage.7", "08:00"), "there is no setting Topage.7");
  EXPECT_EQ(SetTo("Instru", "24"), "Instru: \"24\" is no hour 00 to 23");
  EXPECT_EQ(SetTo("Filtre", "06:00"), "Filtre: \"06:00\" is no period hh:mm-hh:mm");
  EXPECT_EQ(SetTo("ComboHeure.0", "06:00,6"), "ComboHeure: \"6\" is no time of day hh:mm");
  EXPECT_EQ(Stored("PmixDef"), "1600");
  EXPECT_EQ(StationFile("StartStop.0"), "(no file)");
  EXPECT_EQ(Errors(), Texts{});
}

TEST_F(SettingsByName, MoreThanEightyPeriodsAreRefused) {
  std::string periods;
  for (int i = 0; i < 80; ++i) periods += "06:00-07:00,";
  EXPECT_EQ(SetTo("Filtre", periods + "08:00-09:00"), "Filtre: more than 80 rows");
  EXPECT_EQ(StationFile("Exclusion.Txt"), "(no file)");
  EXPECT_EQ(SetTo("Filtre", periods), std::nullopt);
}

TEST_F(SettingsByName, ListsAreEntriesBetweenCommas) {
  EXPECT_EQ(SetTo("Instru", "0, 05,23"), std::nullopt);
  EXPECT_EQ(Value("Instru"), "00,05,23");
  EXPECT_EQ(SetTo("Filtre", "06:00-09:00,18:00 - 20:30"), std::nullopt);
  EXPECT_EQ(StationFile("Exclusion.Txt"), "06:00\t09:00\r\n18:00\t20:30\r\n");
  EXPECT_EQ(Value("Filtre"), "06:00-09:00,18:00-20:30");
  EXPECT_EQ(SetTo("ComboHeure.6", "06:00"), std::nullopt);
  EXPECT_EQ(SetTo("HeureArretSystem.6", "12:00-f,23:00"), std::nullopt);
  EXPECT_EQ(StationFile("StartStop.6"),
            "\"START\",\"06:00\"\r\n\"STOP\",\"12:00-F\"\r\n\"STOP\",\"23:00\"\r\n");
  EXPECT_EQ(SetTo("Topage.0", "08:00,08:30"), std::nullopt);
  EXPECT_EQ(Value("Topage.0"), "08:00,08:30");
  EXPECT_EQ(SetTo("Topage.0", ""), std::nullopt);
  EXPECT_EQ(StationFile("Topage.0"), "");
}

TEST_F(SettingsByName, AStopListIsNotLostWithAFileThatCannotBeRead) {
  const std::string path = on.stationDir.Path() + "/StartStop.0";
  std::filesystem::create_directory(path);
  EXPECT_EQ(SetTo("ComboHeure.0", "06:00"), std::nullopt);
  EXPECT_EQ(Errors().size(), 1U);
  EXPECT_TRUE(std::filesystem::is_directory(path));
}

TEST_F(SettingsByName, AStatementIsOnlyText) {
  const std::string typed = "'; DELETE FROM Discotheque; --";
  EXPECT_EQ(SetTo("TexteV", typed), std::nullopt);
  EXPECT_EQ(Value("TextVeille"), typed);
}

}  // namespace
}  // namespace zemo::test
