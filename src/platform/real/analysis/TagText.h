// Texts of tags, as TagLib has them or as bytes, made fit for the fields of a card.
#pragma once

#include <taglib/tbytevector.h>
#include <taglib/tstring.h>

#include <map>
#include <string>

#include "platform/SoundTags.h"

namespace zemo {

// By the names that Vorbis comments and TagLib's properties have for them: ARTIST, DATE, ...
using TagFields = std::map<std::string, std::string>;

// Several values of one field stand behind each other, with commas between them.
void AddField(TagFields& fields, const std::string& name, const std::string& text);
TagTexts TextsOf(const TagFields& fields);

// Latin-1 where the bytes are no UTF-8.
TagLib::String TextOfBytes(const TagLib::ByteVector& bytes);

// UTF-8 in one line, trimmed: control characters and line ends are blanks, halves of characters the
// replacement character.
std::string FieldText(TagLib::String text);

// The first four digits of the first number that has as many; empty without, and for year 0.
std::string YearText(const std::string& date);

}  // namespace zemo
