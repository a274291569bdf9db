// The voice track editor's words in the four languages.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "station/OperatorWords.h"
#include "voicetrack/VoiceTrackScreen.h"
#include "voicetrack/VoiceTrackTexts.h"

namespace zemo {
namespace {

TEST(VoiceTrackTexts, EachNameStandsOnceWithAWordInEachLanguage) {
  std::set<std::string> names;
  for (const Word& word : VoiceTrackCaptions()) {
    EXPECT_TRUE(names.insert(word.name).second) << word.name;
    for (const char* text : word.texts) {
      ASSERT_NE(text, nullptr) << word.name;
      EXPECT_STRNE(text, "") << word.name;
    }
  }
}

TEST(VoiceTrackTexts, EachMessageIsShownInTheOperatorsLanguage) {
  using namespace VoiceTracks;
  const std::string reason = "disk full";
  for (const std::string& message :
       {std::string(kNoIntro), std::string(kDoesNotFit), std::string(kFitted),
        std::string(kNoSound), std::string(kNoPlace), std::string(kNoEditor), std::string(kNoMixer),
        std::string(kRecordingEnded), std::string(kAskSave), kNotMeasured + reason,
        kNotNormalized + reason, kNotOpened + reason}) {
    EXPECT_EQ(InOperatorsWords(message, 0), message);
    std::set<std::string> forms;
    for (int langue = 0; langue < 4; ++langue) forms.insert(InOperatorsWords(message, langue));
    EXPECT_EQ(forms.size(), 4U) << message;
  }
  EXPECT_EQ(InOperatorsWords(kNoIntro, kEnglish), "This cannot be done: there is no intro");
  EXPECT_EQ(InOperatorsWords("Broadcasting at 10 h 02 ' 03", 3), "Emisión a las 10 h 02 ' 03");
}

TEST(VoiceTrackTexts, TheCutSaysWhetherItIsOn) {
  VoiceTrackEditor editor;
  EXPECT_EQ(ShownCut(editor, 0), "Cut Off");
  editor.CheckCut = true;
  EXPECT_EQ(ShownCut(editor, kEnglish), "Cut On");
}

}  // namespace
}  // namespace zemo
