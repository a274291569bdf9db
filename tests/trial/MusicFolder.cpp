#include "trial/MusicFolder.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numbers>
#include <vector>

namespace zemo::test {

namespace {

namespace fs = std::filesystem;

constexpr int kWav16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16, kWav24 = SF_FORMAT_WAV | SF_FORMAT_PCM_24,
              kWav8 = SF_FORMAT_WAV | SF_FORMAT_PCM_U8, kWavFloat = SF_FORMAT_WAV | SF_FORMAT_FLOAT,
              kWavUlaw = SF_FORMAT_WAV | SF_FORMAT_ULAW, kFlac = SF_FORMAT_FLAC | SF_FORMAT_PCM_16,
              kOgg = SF_FORMAT_OGG | SF_FORMAT_VORBIS,
              kMp3 = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;

// Three of a new station's, and one that it does not have.
constexpr std::array kGenres = {"GOLD N-1", "GOLD N-2", "playlist", "Chillout"};

struct Sound {
  int format = kWav16;
  int rate = 44100;
  int channels = 2;
  int seconds = 5;
  std::string artist{}, title{}, genre{};
};

class Maker {
 public:
  explicit Maker(const std::string& root) : root_(root) {}
  MusicFolder made;

  void Good(const std::string& name, const Sound& sound) {
    Write(name, sound);
    made.good.insert(name);
  }
  void Good(const std::string& name, const std::string& bytes) {
    Put(name, bytes);
    made.good.insert(name);
  }
  void Bad(const std::string& name, const std::string& bytes) {
    Put(name, bytes);
    made.bad.insert(name);
  }
  void Doubtful(const std::string& name, const std::string& bytes) {
    Put(name, bytes);
    made.doubtful.insert(name);
  }
  void Put(const std::string& name, const std::string& bytes) const {
    std::ofstream(Place(name), std::ios::binary) << bytes;
  }
  std::string Get(const std::string& name) const {
    std::ifstream file(root_ + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string Bytes(const Sound& sound) {
    Write("made", sound);
    std::string bytes = Get("made");
    fs::remove(root_ + "/made");
    return bytes;
  }

 private:
  std::string Place(const std::string& name) const {
    const fs::path path = root_ + "/" + name;
    fs::create_directories(path.parent_path());
    return path.string();
  }

  // A tone of its own for each sound, which fades over its last second.
  void Write(const std::string& name, const Sound& sound) {
    SF_INFO info{};
    info.samplerate = sound.rate;
    info.channels = sound.channels;
    info.format = sound.format;
    SNDFILE* out = sf_open(Place(name).c_str(), SFM_WRITE, &info);
    ASSERT_TRUE(out) << name << ": " << sf_strerror(nullptr);
    double level = 0.9;  // of what compresses: small
    sf_command(out, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
    const auto text = [&](int which, const std::string& words) {
      if (!words.empty()) sf_set_string(out, which, words.c_str());
    };
    text(SF_STR_ARTIST, sound.artist);
    text(SF_STR_TITLE, sound.title);
    text(SF_STR_GENRE, sound.genre);
    const double hertz = 200 + 7 * ++sounds_;
    const int64_t frames = int64_t{sound.rate} * sound.seconds;
    std::vector<float> block;
    constexpr int64_t kPiece = 1000;  // more in one call overflows the stack of some encoders
    for (int64_t at = 0; at < frames; at += kPiece) {
      block.clear();
      for (int64_t i = at; i < std::min(at + kPiece, frames); ++i) {
        const double phase = static_cast<double>(i) / sound.rate * hertz;
        const double left = std::min(1.0, static_cast<double>(frames - i) / sound.rate);
        for (int channel = 0; channel < sound.channels; ++channel)
          block.push_back(static_cast<float>(0.3 * left * std::sin(2 * std::numbers::pi * phase)));
      }
      sf_writef_float(out, block.data(), static_cast<sf_count_t>(block.size()) / sound.channels);
    }
    sf_close(out);
  }

  std::string root_;
  int sounds_ = 0;
};

// --- tags by hand ---

std::string Number(size_t value, int bytes, int bits) {  // the highest byte first
  std::string text;
  for (int byte = bytes - 1; byte >= 0; --byte)
    text += static_cast<char>((value >> (byte * bits)) & ((1U << bits) - 1));
  return text;
}

std::string Frame(const std::string& name, const std::string& content) {
  return name + Number(content.size(), 4, 8) + std::string(2, '\0') + content;
}

// ID3v2.3, with room behind.
std::string Id3(const std::string& frames) {
  const std::string body = frames + std::string(64, '\0');
  return std::string("ID3\3\0\0", 6) + Number(body.size(), 4, 7) + body;
}

std::string Latin1(const std::string& text) {
  return std::string(1, '\0') + text;
}

std::string Utf16(std::u16string_view text, bool bigEnd) {
  std::string bytes(1, '\1');
  const auto add = [&](char16_t unit) {
    const char high = static_cast<char>(unit >> 8U), low = static_cast<char>(unit & 0xFFU);
    bytes += bigEnd ? high : low;
    bytes += bigEnd ? low : high;
  };
  add(0xFEFF);
  for (const char16_t unit : text) add(unit);
  return bytes;
}

std::string Id3v1(const std::string& title, const std::string& artist) {
  std::string tag = "TAG" + title;
  tag.resize(33, ' ');
  tag += artist;
  tag.resize(63, '\0');
  tag += std::string(64, ' ') + "\x11";  // Rock
  return tag;
}

// --- what the folder holds ---

// What makes up the hours: songs of some minutes, of the quality of an answering machine.
void AddSongs(Maker& make) {
  for (int song = 0; song < 32; ++song) {
    const std::string number = std::to_string(song);
    const char* genre = kGenres[static_cast<size_t>(song) % kGenres.size()];
    const Sound sound{song % 3 == 0   ? kMp3
                      : song % 3 == 1 ? kOgg
                                      : kFlac,
                      8000,
                      1,
                      140 + song,
                      "Artist " + std::to_string(song % 23),
                      "Song " + number,
                      genre};
    const char* ending = song % 3 == 0 ? ".mp3" : song % 3 == 1 ? ".ogg" : ".flac";
    make.Good("Albums/" + std::string(genre) + "/" + number + ending, sound);
  }
}

void AddQualities(Maker& make) {
  struct Kind {
    const char* name;
    int format;
    const char* ending;
  };
  constexpr std::array<Kind, 8> kKinds = {{{"16 bits", kWav16, ".wav"},
                                           {"24 bits", kWav24, ".WAV"},
                                           {"8 bits", kWav8, ".wav"},
                                           {"float", kWavFloat, ".Wav"},
                                           {"u-law", kWavUlaw, ".wav"},
                                           {"flac", kFlac, ".flac"},
                                           {"ogg", kOgg, ".ogg"},
                                           {"mp3", kMp3, ".MP3"}}};
  for (const Kind& kind : kKinds)
    for (const int rate : {8000, 11025, 16000, 22050, 32000, 44100, 48000, 96000})
      for (const int channels : {1, 2}) {
        if (kind.format == kMp3 && rate > 48000) continue;  // there is none
        make.Good("Qualities/" + std::string(kind.name) + "/" + std::to_string(rate) +
                      (channels == 1 ? " mono" : " stereo") + kind.ending,
                  {kind.format, rate, channels, 5, "Tester", kind.name, "GOLD N-1"});
      }
  make.Good("Long/two hours.flac", {kFlac, 8000, 1, 7200, "Live", "The whole concert", "Rock"});
}

void AddTags(Maker& make) {
  const auto mp3 = [&] { return make.Bytes({kMp3, 22050, 1, 6}); };
  make.Good("Tags/utf-16.mp3", Id3(Frame("TPE1", Utf16(u"\u0416\u0430\u043D\u043D\u0430", false)) +
                                   Frame("TIT2", Utf16(u"\u6771\u4EAC", true))) +
                                   mp3());
  make.Good(
      "Tags/latin-1.mp3",
      Id3(Frame("TPE1", Latin1("Fran\xE7oise")) + Frame("TIT2", Latin1("\xC9t\xE9"))) + mp3());
  make.Good("Tags/said to be latin-1.mp3", Id3(Frame("TPE1", Latin1("Bj\xC3\xB6rk"))) + mp3());
  make.Good("Tags/utf-16 cut in the middle.mp3",
            Id3(Frame("TIT2", Utf16(u"Song", false).substr(0, 8))) + mp3());
  make.Good("Tags/long.mp3", Id3(Frame("TIT2", Latin1(std::string(5000, 'x'))) +
                                 Frame("TALB", Latin1("An album of far too many words to fit"))) +
                                 mp3());
  make.Good("Tags/genre by number.mp3", Id3(Frame("TCON", Latin1("(17)"))) + mp3());
  make.Good("Tags/lines.mp3", Id3(Frame("TIT2", Latin1("One\r\nTwo\tThree"))) + mp3());
  make.Good("Tags/empty.mp3", Id3(Frame("TIT2", "") + Frame("TPE1", Latin1(""))) + mp3());
  make.Good("Tags/old.mp3", mp3() + Id3v1("Old title", "Old artist"));
  make.Good("Tags/year of nothing.mp3", Id3(Frame("TYER", Latin1("99999999"))) + mp3());
  make.Good("Tags/frame longer than the tag.mp3",
            Id3("TIT2" + Number(0x7FFFFFF, 4, 8) + std::string(2, '\0') + "x") + mp3());
  make.Good("Tags/none.mp3", mp3());
  make.Good("Tags/none.ogg", Sound{kOgg, 22050, 2, 6});
  make.Good("Tags/none.flac", Sound{kFlac, 22050, 2, 6});
}

void AddNames(Maker& make) {
  const auto wav = [&] { return make.Bytes({kWav16, 8000, 1, 5}); };
  for (const char* name :
       {"Names/caf\xE9 of 8 bits.wav", "Names/caf\xC3\xA9.wav", "Names/-rf.wav",
        "Names/100 %s %d.wav", "Names/it's \"quoted\".wav", "Names/two\nlines.wav",
        "Names/ blanks .wav", "Names/\xE6\x9D\xB1\xE4\xBA\xAC.wav", "Names/semi;colon & co.wav",
        "Names/.hidden.wav", "Names/folder.mp3/a.wav", "Names/Artist - Title.wav",
        "Names/.wav.wav"})
    make.Good(name, wav());
  make.Good("Names/" + std::string(150, 'n') + ".wav", wav());
}

void AddDamage(Maker& make) {
  const std::string noise = [] {
    std::string bytes;
    uint32_t state = 1;
    for (int i = 0; i < 20000; ++i) bytes += static_cast<char>((state = state * 1664525 + 7) >> 24);
    return bytes;
  }();
  for (const char* ending : {".wav", ".mp3", ".flac", ".ogg"}) {
    make.Bad(std::string("Damage/empty") + ending, "");
    make.Bad(std::string("Damage/a text") + ending, "This is no sound at all.\n");
    make.Doubtful(std::string("Damage/noise") + ending, noise);
  }
  const std::string wav = make.Bytes({kWav16, 44100, 2, 5}), mp3 = make.Bytes({kMp3, 44100, 2, 8}),
                    flac = make.Bytes({kFlac, 44100, 2, 8}), ogg = make.Bytes({kOgg, 44100, 2, 8});
  const auto damage = [&](const std::string& ending, const std::string& bytes) {
    make.Doubtful("Damage/half" + ending, bytes.substr(0, bytes.size() / 2));
    make.Doubtful("Damage/head" + ending, bytes.substr(0, 60));
    std::string holed = bytes;
    holed.replace(bytes.size() / 3, 2000, noise, 0, 2000);
    make.Doubtful("Damage/a hole" + ending, holed);
    make.Doubtful("Damage/zeros behind" + ending, bytes + std::string(50000, '\0'));
  };
  damage(".wav", wav);
  damage(".mp3", mp3);
  damage(".flac", flac);
  damage(".ogg", ogg);
  make.Good("Misnamed/mp3.wav", make.Bytes({kMp3, 44100, 2, 8}));
  make.Good("Misnamed/flac.mp3", make.Bytes({kFlac, 44100, 2, 8}));
  make.Good("Misnamed/ogg.flac", make.Bytes({kOgg, 44100, 2, 8}));
  make.Good("Misnamed/wav.ogg", make.Bytes({kWav16, 44100, 2, 8}));
}

void AddTheRest(Maker& make) {
  for (int copy = 0; copy < 3; ++copy)
    make.Good("Copies/" + std::to_string(copy) + ".mp3", make.Get("Tags/none.mp3"));
  for (const char* name : {"cover.jpg", "list.m3u", "words.txt", "Thumbs.db", "song.m4a", "x.wma",
                           "without ending", "Albums/folder.jpg"})
    make.Put(name, "something else");
}

}  // namespace

MusicFolder MakeMusicFolder(const std::string& folder) {
  Maker make(folder);
  AddSongs(make);
  AddQualities(make);
  AddTags(make);
  AddNames(make);
  AddDamage(make);
  AddTheRest(make);
  return make.made;
}

}  // namespace zemo::test
