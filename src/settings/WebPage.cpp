#include "settings/WebPage.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "platform/BoundedRead.h"
#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr size_t kLinesLookedAt = 100;  // lines behind them stay as they are
constexpr std::string_view kSource = "SRC=";
constexpr std::string_view kPicture = ".JPG";

using Lines = std::vector<std::string>;

size_t LinesToSearch(const Lines& lines) {
  return std::min(lines.size(), kLinesLookedAt);
}

void ReplaceAnnouncement(Lines& lines, std::string_view marker, std::string_view announcement) {
  if (marker.empty()) return;
  const std::string wanted = UpperLatin(marker);
  for (size_t i = 0; i < LinesToSearch(lines); ++i) {
    // Capitals are as long as their letters, so that the places hold in the line itself.
    const size_t found = UpperLatin(lines[i]).find(wanted);
    if (found == std::string::npos) continue;
    const size_t begin = found + wanted.size();
    const size_t end = std::min(lines[i].find('<', begin), lines[i].size());
    lines[i].replace(begin, end - begin, announcement);
    return;
  }
}

// The end of a picture's path that begins at `begin`: behind its ".JPG"; where it has none, the end
// of the attribute's value.
size_t PictureEnd(const std::string& upperLine, size_t begin) {
  const size_t picture = upperLine.find(kPicture, begin);
  if (picture != std::string::npos) return picture + kPicture.size();
  return std::min(upperLine.find_first_of("\"' >", begin), upperLine.size());
}

// A path cannot leave the attribute that it is put into, nor begin a line of its own. Where it has
// no ".JPG" by which the next one finds its end, its blanks and apostrophes go too.
std::string PathInAttribute(std::string_view path) {
  const bool endsByItself = UpperAscii(path).find(kPicture) != std::string::npos;
  const std::string_view odd = endsByItself ? "\"<>" : "\"<> '";
  constexpr const char* kHex = "0123456789ABCDEF";
  std::string url;
  for (const char letter : path) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte >= 0x20 && odd.find(letter) == std::string_view::npos)
      url += letter;
    else
      (url += '%') += {kHex[byte / 16], kHex[byte % 16]};
  }
  return url;
}

// In the first line with `marker` and "src=", the path behind "src=" gives way.
void ReplacePicture(Lines& lines, std::string_view marker, std::string_view path) {
  if (marker.empty()) return;
  const std::string wanted = UpperLatin(marker);
  for (size_t i = 0; i < LinesToSearch(lines); ++i) {
    const std::string upper = UpperLatin(lines[i]);
    const size_t source = upper.find(kSource);
    if (source == std::string::npos || upper.find(wanted) == std::string::npos) continue;
    const size_t begin = source + kSource.size();
    lines[i].replace(begin, PictureEnd(upper, begin) - begin, PathInAttribute(path));
    return;
  }
}

// A text stays text in the page, and ends for the next one where it ends now.
std::string TextForPage(std::string_view text) {
  std::string html;
  for (const char letter : OneLine(text)) {
    if (letter == '<')
      html += "&lt;";
    else if (letter == '>')
      html += "&gt;";
    else
      html += letter;
  }
  return html;
}

// A stored path as the page's server knows it: without its drive, with slashes.
std::string PathForPage(std::string path) {
  if (path.size() >= 2 && path[1] == ':') path.erase(0, 2);
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

// The page goes back in the encoding that it came in: a page in UTF-8 says so itself, and its
// readers believe it. Anything else is treated as a side file.
std::string EncodeLikePage(const std::string& text, std::string_view oldBytes) {
  const bool marked = oldBytes.substr(0, 3) == "\xEF\xBB\xBF";
  const bool ascii = std::all_of(oldBytes.begin(), oldBytes.end(),
                                 [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  const bool saysUtf8 = UpperAscii(oldBytes).find("UTF-8") != std::string::npos;
  if (!marked && IsValidUtf8(oldBytes) && (!ascii || saysUtf8)) return text;
  return marked ? "\xEF\xBB\xBF" + text : EncodeSideFile(text);
}

}  // namespace

void LoadFileRealAudio(Station& station) {
  auto& internet = station.lists.Internet;
  internet = {};
  try {
    const auto text = ReadSideFile(station.platform.stationFolder, station.files.Internet);
    if (!text) return;
    Lines lines = SplitLines(*text);
    lines.resize(4);
    internet.pageFile = Trim(lines[0]);
    internet.firstMarker = lines[1];
    internet.separator = lines[2];
    internet.secondMarker = lines[3];
    internet.on = station.platform.soundFiles.Exists(internet.pageFile);
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadFileRealAudio");
  }
}

void SaveInfoRealAudio(Station& station, std::string_view announcement,
                       std::string_view soundFile) {
  const auto& internet = station.lists.Internet;
  SoundFiles& files = station.platform.soundFiles;
  try {
    if (internet.pageFile.empty()) return;
    const std::optional<std::string> page = ReadBounded(files, internet.pageFile);
    if (!page) return;
    Lines lines = SplitLines(DecodeSideFile(*page));
    ReplaceAnnouncement(lines, internet.firstMarker, TextForPage(announcement));
    const std::string picture = SideFilePath(soundFile, "JPG");
    if (files.Exists(picture)) ReplacePicture(lines, kPicture, PathForPage(picture));
    if (const auto net = ReadBounded(files, SideFilePath(soundFile, "Net"))) {
      const Lines netLines = SplitLines(DecodeSideFile(*net));
      if (!netLines.empty()) ReplacePicture(lines, internet.secondMarker, netLines.front());
    }
    files.Write(internet.pageFile, EncodeLikePage(JoinLines(lines), *page));
  } catch (const std::exception&) {
    LogCurrentException(station, "SaveInfoRealAudio");
  }
}

}  // namespace zemo
