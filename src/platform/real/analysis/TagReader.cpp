#include "platform/real/analysis/TagReader.h"

#include <taglib/aifffile.h>
#include <taglib/apetag.h>
#include <taglib/flacfile.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2tag.h>
#include <taglib/mpegfile.h>
#include <taglib/oggfile.h>
#include <taglib/opusfile.h>
#include <taglib/tpropertymap.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>

#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <string_view>

#include "platform/real/analysis/TagText.h"
#include "platform/real/analysis/VorbisComments.h"

namespace zemo {

namespace {

void FillEmpty(TagTexts& texts, const TagTexts& others) {
  for (const auto text : {&TagTexts::artist, &TagTexts::title, &TagTexts::genre, &TagTexts::year,
                          &TagTexts::album, &TagTexts::composer, &TagTexts::label}) {
    if ((texts.*text).empty()) texts.*text = others.*text;
  }
}

// A tag shows all that it has only by its own type.
template <typename Tag>
void FillEmpty(TagTexts& texts, const Tag* tag) {
  if (!tag) return;
  TagFields fields;
  for (const auto& [name, values] : tag->properties()) {
    for (const TagLib::String& value : values) {
      AddField(fields, name.to8Bit(true), FieldText(value));
    }
  }
  FillEmpty(texts, TextsOf(fields));
}

// Its chunks as bytes: TagLib takes the texts of INFO for UTF-8, which they seldom are.
class WaveTags : public TagLib::RIFF::WAV::File {
 public:
  explicit WaveTags(const std::string& path) : TagLib::RIFF::WAV::File(path.c_str(), false) {}

  TagFields InfoFields() {
    TagFields fields;
    for (unsigned int i = 0; i < chunkCount(); ++i) {
      if (chunkName(i) != "LIST") continue;
      const TagLib::ByteVector list = chunkData(i);
      if (list.startsWith("INFO")) AddInfo(fields, list);
    }
    return fields;
  }

 private:
  static void AddInfo(TagFields& fields, const TagLib::ByteVector& list) {
    static const std::map<std::string_view, std::string> kNames = {
        {"IART", "ARTIST"}, {"INAM", "TITLE"},    {"IGNR", "GENRE"},    {"ICRD", "DATE"},
        {"IPRD", "ALBUM"},  {"IMUS", "COMPOSER"}, {"IPUB", "PUBLISHER"}};
    constexpr unsigned int kHead = 8;
    for (unsigned int at = 4; at + kHead < list.size();) {
      const unsigned int size = list.toUInt(at + 4, false);
      const auto name = kNames.find(std::string_view(list.data() + at, 4));
      at += kHead;
      if (name != kNames.end()) {
        AddField(fields, name->second, FieldText(TextOfBytes(list.mid(at, size))));
      }
      if (size >= list.size() - at) return;
      at += size + size % 2;
    }
  }
};

// The second packet of a stream, behind the bytes that say what it is.
TagTexts OggTexts(TagLib::Ogg::File& file, std::string_view mark) {
  const TagLib::ByteVector packet = file.packet(1);
  const auto length = static_cast<unsigned int>(mark.size());
  if (packet.mid(0, length) != TagLib::ByteVector(mark.data(), length)) return {};
  return TextsOf(ReadVorbisComments(packet.mid(length)));
}

TagTexts ReadOgg(const std::string& path) {
  TagLib::Ogg::Vorbis::File vorbis(path.c_str(), false);
  TagTexts texts = OggTexts(vorbis, "\x03vorbis");
  if (texts == TagTexts()) texts = OggTexts(vorbis, "OpusTags");
  return texts;
}

TagTexts ReadFlac(const std::string& path) {
  TagTexts texts = TextsOf(ReadVorbisComments(FlacComments(path)));
  TagLib::FLAC::File file(path.c_str(), false);
  FillEmpty(texts, file.ID3v2Tag());
  FillEmpty(texts, file.ID3v1Tag());
  return texts;
}

TagTexts ReadWave(const std::string& path) {
  WaveTags file(path);
  TagTexts texts;
  FillEmpty(texts, file.ID3v2Tag());
  FillEmpty(texts, TextsOf(file.InfoFields()));
  return texts;
}

TagTexts ReadAiff(const std::string& path) {
  TagLib::RIFF::AIFF::File file(path.c_str(), false);
  TagTexts texts;
  FillEmpty(texts, file.tag());
  return texts;
}

TagTexts ReadMpeg(const std::string& path) {
  TagLib::MPEG::File file(path.c_str(), false);
  TagTexts texts;
  FillEmpty(texts, file.ID3v2Tag());
  FillEmpty(texts, file.APETag());
  FillEmpty(texts, file.ID3v1Tag());
  return texts;
}

TagTexts ReadTexts(const std::string& path) {
  char head[12] = {};
  std::ifstream(path, std::ios::binary).read(head, sizeof head);
  const std::string_view first(head, 4);
  const std::string_view third(head + 8, 4);
  if (first == "OggS") return ReadOgg(path);
  if (first == "RIFF" && third == "WAVE") return ReadWave(path);
  if (first == "FORM" && third.starts_with("AIF")) return ReadAiff(path);
  if (first == "fLaC" || !FlacComments(path).isEmpty()) return ReadFlac(path);
  return ReadMpeg(path);
}

}  // namespace

std::optional<TagTexts> TagReader::Read(const std::string& path) {
  try {
    // Opening a pipe would wait for whoever fills it.
    if (!std::filesystem::is_regular_file(path)) return std::nullopt;
    const TagTexts texts = ReadTexts(path);
    if (texts == TagTexts()) return std::nullopt;
    return texts;
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace zemo
