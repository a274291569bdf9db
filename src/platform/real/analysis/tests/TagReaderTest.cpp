// Tags as programs write them, and as damage leaves them.
#include <gtest/gtest.h>
#include <sndfile.h>
#include <sys/stat.h>
#include <taglib/aifffile.h>
#include <taglib/apetag.h>
#include <taglib/flacfile.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpegfile.h>
#include <taglib/opusfile.h>
#include <taglib/textidentificationframe.h>
#include <taglib/tpropertymap.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>
#include <taglib/xiphcomment.h>

#include <ostream>
#include <random>

#include "platform/real/analysis/TagReader.h"
#include "platform/real/decoders/tests/TestSounds.h"

namespace zemo {

// For the messages of the tests.
void PrintTo(const TagTexts& texts, std::ostream* out) {
  *out << texts.artist << '|' << texts.title << '|' << texts.genre << '|' << texts.year << '|'
       << texts.album << '|' << texts.composer << '|' << texts.label;
}

namespace {

using TagLib::String;

const TagTexts kTexts = {"Édith", "Ω et α", "Chanson", "1956", "Olympia", "M. Dumont", "Columbia"};

TagLib::PropertyMap Properties() {
  const auto of = [](const std::string& text) {
    return TagLib::StringList(String(text, String::UTF8));
  };
  TagLib::PropertyMap map;
  map["ARTIST"] = of(kTexts.artist);
  map["TITLE"] = of(kTexts.title);
  map["GENRE"] = of(kTexts.genre);
  map["DATE"] = of("1956-05-17");
  map["ALBUM"] = of(kTexts.album);
  map["COMPOSER"] = of(kTexts.composer);
  map["LABEL"] = of(kTexts.label);
  return map;
}

std::string BigEndian(size_t value, int bytes) {
  std::string text;
  while (bytes-- > 0) text += static_cast<char>(value >> (8 * bytes));
  return text;
}

// A frame of an ID3v2.3 tag and a tag of frames; sizes of less than 128 bytes are the same in all
// versions.
std::string Frame(const std::string& name, const std::string& content) {
  return name + BigEndian(content.size(), 4) + std::string(2, '\0') + content;
}
std::string ShortTag(char version, const std::string& frames) {
  return std::string("ID3") + version + std::string(2, '\0') + BigEndian(frames.size(), 4) + frames;
}

// 128 bytes at the end of an MP3.
std::string Id3v1(const std::string& title, const std::string& artist, const std::string& year) {
  const auto field = [](std::string text, size_t size) {
    text.resize(size);
    return text;
  };
  return "TAG" + field(title, 30) + field(artist, 30) + field("", 30) + field(year, 4) +
         field("", 30) + '\x08';
}

class Tags : public testing::Test {
 protected:
  static std::string Mp3() {
    static const std::string bytes = Mp3Bytes({44100, {440}, 0.3, 4410}, Mp3Mode::kConstant, 0.5);
    return bytes;
  }
  std::string Sound(const std::string& name, int format) const {
    const std::string path = folder_.Path(name);
    WriteSound(path, format, {44100, {440}, 0.3, 4410});
    return path;
  }
  std::string Bytes(const std::string& name, const std::string& bytes) const {
    const std::string path = folder_.Path(name);
    WriteBytes(path, bytes);
    return path;
  }
  static TagTexts Read(const std::string& path) {
    return TagReader().Read(path).value_or(TagTexts{"nothing", "", "", "", "", "", ""});
  }
  TestFolder folder_;
};

TEST_F(Tags, OfId3v23AndV24AreRead) {
  for (const auto version : {TagLib::ID3v2::v3, TagLib::ID3v2::v4}) {
    const std::string path = Bytes("a.mp3", Mp3());
    TagLib::MPEG::File file(path.c_str(), false);
    file.ID3v2Tag(true)->setProperties(Properties());
    ASSERT_TRUE(file.save(TagLib::MPEG::File::ID3v2, TagLib::File::StripOthers, version));
    EXPECT_EQ(Read(path), kTexts);
  }
}

TEST_F(Tags, OfId3v22AreRead) {
  const auto frame = [](const std::string& name, const std::string& text) {
    return name + BigEndian(text.size() + 1, 3) + '\0' + text;
  };
  const std::string path =
      Bytes("a.mp3", ShortTag(2, frame("TP1", "A") + frame("TT2", "T") + frame("TCO", "(17)") +
                                     frame("TYE", "1999") + frame("TCM", "C") + frame("TPB", "L")) +
                         Mp3());
  EXPECT_EQ(Read(path), (TagTexts{"A", "T", "Rock", "1999", "", "C", "L"}));
}

TEST_F(Tags, InLatin1AndInUtf16OfEitherOrderAreRead) {
  using namespace std::string_literals;
  const std::string path =
      Bytes("a.mp3", ShortTag(3, Frame("TPE1", "\0Fran\xE7oise"s) +
                                     Frame("TIT2", "\1\xFF\xFE"s + "\xC9\0t\0\xE9\0\0\0"s) +
                                     Frame("TALB", "\1\xFE\xFF"s + "\x26\x6A"s)) +
                         Mp3());
  EXPECT_EQ(Read(path), (TagTexts{"Françoise", "Été", "", "", "♪", "", ""}));
}

TEST_F(Tags, OfId3v1AreReadWithTheirGenre) {
  const std::string path = Bytes("a.mp3", Mp3() + Id3v1("Caf\xE9", "  Les  Uns ", "1974"));
  EXPECT_EQ(Read(path), (TagTexts{"Les  Uns", "Café", "Jazz", "1974", "", "", ""}));
}

TEST_F(Tags, AreAddedUpFromTheNewestFormToTheOldest) {
  const std::string path = Bytes("a.mp3", ShortTag(3, Frame("TIT2", std::string(1, '\0') + "New")) +
                                              Mp3() + Id3v1("Old", "Someone", "1974"));
  EXPECT_EQ(Read(path), (TagTexts{"Someone", "New", "Jazz", "1974", "", "", ""}));
}

TEST_F(Tags, OfFlacAreReadAlsoBehindAnId3Tag) {
  const std::string path = Sound("a.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16);
  TagLib::FLAC::File file(path.c_str(), false);
  file.xiphComment(true)->setProperties(Properties());
  ASSERT_TRUE(file.save());
  EXPECT_EQ(Read(path), kTexts);
  const std::string behind =
      Bytes("b.flac", ShortTag(3, Frame("TIT2", std::string(1, '\0') + "Id3")) + ReadBytes(path));
  EXPECT_EQ(Read(behind), kTexts);
}

TEST_F(Tags, OfOggAreRead) {
  const std::string vorbis = Sound("a.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS);
  TagLib::Ogg::Vorbis::File file(vorbis.c_str(), false);
  file.tag()->setProperties(Properties());
  ASSERT_TRUE(file.save());
  EXPECT_EQ(Read(vorbis), kTexts);
  const std::string opus = folder_.Path("a.opus");
  WriteSound(opus, SF_FORMAT_OGG | SF_FORMAT_OPUS, {48000, {440}, 0.3, 4800});
  TagLib::Ogg::Opus::File other(opus.c_str(), false);
  other.tag()->setProperties(Properties());
  ASSERT_TRUE(other.save());
  EXPECT_EQ(Read(opus), kTexts);
}

TEST_F(Tags, OfWavAreReadFromId3AndFromInfo) {
  const std::string path = Sound("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16);
  TagLib::RIFF::WAV::File file(path.c_str(), false);
  file.InfoTag()->setArtist("Someone");
  file.InfoTag()->setTitle("Old");
  file.InfoTag()->setFieldText("IMUS", "Composer");
  ASSERT_TRUE(file.save(TagLib::RIFF::WAV::File::Info));
  EXPECT_EQ(Read(path), (TagTexts{"Someone", "Old", "", "", "", "Composer", ""}));
  file.ID3v2Tag()->setTitle("New");
  ASSERT_TRUE(file.save());
  EXPECT_EQ(Read(path), (TagTexts{"Someone", "New", "", "", "", "Composer", ""}));
}

TEST_F(Tags, OfAiffAreRead) {
  const std::string path = Sound("a.aif", SF_FORMAT_AIFF | SF_FORMAT_PCM_16);
  TagLib::RIFF::AIFF::File file(path.c_str(), false);
  file.tag()->setProperties(Properties());
  ASSERT_TRUE(file.save());
  EXPECT_EQ(Read(path), kTexts);
}

TEST_F(Tags, InInfoThatAreNoUtf8AreLatin1) {
  const std::string text = "\xC9t\xE9";  // three bytes, a closing zero and no filling
  const std::string info = "INFOINAM" + LittleEndian(4, 4) + text + std::string(1, '\0');
  const std::string list = "LIST" + LittleEndian(static_cast<int64_t>(info.size()), 4) + info;
  std::string wave = WaveBytes({}, std::string(400, '\0')) + list;
  PutLittleEndian32(wave, kWaveRiffLengthAt, static_cast<uint32_t>(wave.size() - 8));
  EXPECT_EQ(Read(Bytes("a.wav", wave)).title, "Été");
}

// The two bytes of an "é" made two characters that no UTF-8 begins with.
TEST_F(Tags, InVorbisCommentsThatAreNoUtf8AreLatin1) {
  const std::string path = Sound("a.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16);
  TagLib::FLAC::File file(path.c_str(), false);
  file.xiphComment(true)->setTitle(String("Caf\xC3\xA9", String::UTF8));
  ASSERT_TRUE(file.save());
  std::string bytes = ReadBytes(path);
  bytes.replace(bytes.find("Caf\xC3\xA9"), 5, "Caf\xE9\xE9");
  EXPECT_EQ(Read(Bytes("b.flac", bytes)).title, "Caféé");
}

TEST_F(Tags, AFileWithoutThemSaysNothing) {
  EXPECT_FALSE(TagReader().Read(Bytes("a.mp3", Mp3())));
  EXPECT_FALSE(TagReader().Read(Sound("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16)));
  EXPECT_FALSE(TagReader().Read(Bytes("empty.mp3", "")));
  EXPECT_FALSE(TagReader().Read(Bytes("noise.mp3", Noise(50'000, 5))));
  EXPECT_FALSE(TagReader().Read(folder_.Path("gone.mp3")));
  EXPECT_FALSE(TagReader().Read(folder_.Path("")));
}

TEST_F(Tags, APipeInTheFilesPlaceHoldsNobody) {
  const std::string path = folder_.Path("pipe.mp3");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_FALSE(TagReader().Read(path));
}

TEST_F(Tags, TheNameOfAFileDoesNotMatter) {
  EXPECT_EQ(Read(Bytes("a.wav", Mp3() + Id3v1("T", "A", "1974"))).title, "T");
}

TEST_F(Tags, FramesWithImpossibleSizesCostNoMoreThanThemselves) {
  using namespace std::string_literals;
  const std::string good = Frame("TPE1", "\0A"s);
  for (const std::string& bad :
       {"TIT2\x7F\xFF\xFF\xFF\0\0\0T"s, "TIT2\0\0\0\0\0\0"s, "TIT2\0\0\0\1\0\0\3"s, "TIT2\0"s,
        "TIT2\0\0\0\4\0\0\1\xFF\xFE\x34"s}) {
    EXPECT_EQ(Read(Bytes("a.mp3", ShortTag(3, good + bad) + Mp3())).artist, "A");
  }
  // A whole tag that says it is longer than the file.
  std::string longer = ShortTag(3, good);
  longer[8] = 0x7F;
  EXPECT_EQ(Read(Bytes("a.mp3", longer)).artist, "A");
}

// Damaged anywhere, cut off anywhere: whatever is read is valid, and nothing ends the program.
TEST_F(Tags, OfDamagedFilesGiveTextsOrNothing) {
  const std::string flac = Sound("a.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16);
  const std::string ogg = Sound("a.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS);
  const std::string wav = Sound("a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16);
  const std::string mp3 = Bytes("a.mp3", Mp3());
  {
    TagLib::FLAC::File a(flac.c_str(), false);
    TagLib::Ogg::Vorbis::File b(ogg.c_str(), false);
    TagLib::RIFF::WAV::File c(wav.c_str(), false);
    TagLib::MPEG::File d(mp3.c_str(), false);
    a.xiphComment(true)->setProperties(Properties());
    b.tag()->setProperties(Properties());
    c.ID3v2Tag()->setProperties(Properties());
    c.InfoTag()->setTitle("Info");
    d.ID3v2Tag(true)->setProperties(Properties());
    d.APETag(true)->setProperties(Properties());
    ASSERT_TRUE(a.save() && b.save() && c.save() && d.save());
  }
  std::mt19937 random(11);
  for (const std::string& path : {flac, ogg, wav, mp3}) {
    const std::string whole = ReadBytes(path);
    for (int i = 0; i < 150; ++i) {
      std::string bytes = whole;
      // Where the tags are: at the begin, or at the end.
      const size_t reach = std::min<size_t>(bytes.size(), 1500);
      for (int hit = 0; hit < 1 + i % 8; ++hit) {
        const size_t at = random() % reach;
        bytes[hit % 2 == 0 ? at : bytes.size() - 1 - at] = static_cast<char>(random());
      }
      if (i % 3 == 0) bytes.resize(random() % (bytes.size() + 1));
      const auto texts = TagReader().Read(Bytes("damaged", bytes));
      if (!texts) continue;
      for (const std::string& text : {texts->artist, texts->title, texts->genre, texts->album}) {
        EXPECT_TRUE(text.empty() || !String(text, String::UTF8).isEmpty()) << path << ' ' << i;
        EXPECT_EQ(text.find_first_of("\n\r"), std::string::npos);
      }
    }
  }
}

}  // namespace
}  // namespace zemo
