// See MpegLayout.h.
#include "platform/real/decoders/MpegLayout.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zemo {
namespace {

// Frames in a row that prove a stream: where one is due or its kind is known, and in the midst of
// unknown bytes, where what looks like a few frames is met by chance.
constexpr int kChain = 4;
constexpr int kChainInUnknown = 16;
constexpr int kDecoderDelay = 529;  // samples a layer 3 decoder adds before the encoder's delay
constexpr int kId3v1 = 128;         // bytes
constexpr int kApeFooter = 32;      // bytes

std::optional<MpegHeader> HeaderAt(FileBytes& file, int64_t at, int64_t end) {
  if (at + 4 > end) return std::nullopt;
  const uint8_t* bytes = file.Peek(at, 4);
  return bytes ? ParseMpegHeader(bytes) : std::nullopt;
}

// True when `frames` frames of one stream follow one another from `at`, or at least two headers up
// to the end, or, if one `mayBeAlone`, a single frame that ends there.
bool IsChain(FileBytes& file, int64_t at, int64_t end, int frames, bool mayBeAlone) {
  const auto first = HeaderAt(file, at, end);
  if (!first) return false;
  int64_t next = at + first->bytes;
  for (int count = 1; count < frames; ++count) {
    if (next >= end - 3) return count >= 2 || (mayBeAlone && next == end);
    const auto header = HeaderAt(file, next, end);
    if (!header || !SameStream(*header, *first)) return false;
    next += header->bytes;
  }
  return true;
}

// First position from `from` on, below `last`, where a chain begins; of the stream of `like` when
// given. -1 when there is none.
int64_t FindChain(FileBytes& file, int64_t from, int64_t last, int64_t end,
                  const MpegHeader* like) {
  for (int64_t at = from; at < last; ++at) {
    size_t count = 0;
    const uint8_t* bytes = file.PeekBlock(at, count);
    if (count == 0) return -1;
    const auto* sync = static_cast<const uint8_t*>(std::memchr(bytes, 0xFF, count));
    if (!sync) {
      at += static_cast<int64_t>(count) - 1;
      continue;
    }
    at += sync - bytes;
    if (at >= last) return -1;
    const auto header = HeaderAt(file, at, end);
    if (!header || (like && !SameStream(*header, *like))) continue;
    const bool isDue = at == from;
    if (IsChain(file, at, end, isDue || like ? kChain : kChainInUnknown, isDue)) return at;
  }
  return -1;
}

// Where the tags at the end of `within` begin: ID3v1, and APE before it.
int64_t EndWithoutTags(FileBytes& file, ByteSpan within) {
  int64_t end = within.end;
  if (within.Size() >= kId3v1) {
    const uint8_t* tag = file.Peek(end - kId3v1, 3);
    if (tag && std::memcmp(tag, "TAG", 3) == 0) end -= kId3v1;
  }
  if (end - within.begin < kApeFooter) return end;
  const uint8_t* footer = file.Peek(end - kApeFooter, kApeFooter);
  if (!footer || std::memcmp(footer, "APETAGEX", 8) != 0) return end;
  const int64_t items = int64_t{footer[12]} | int64_t{footer[13]} << 8 | int64_t{footer[14]} << 16 |
                        int64_t{footer[15]} << 24;  // footer included, header not
  const bool hasHeader = footer[23] & 0x80;
  const int64_t size = items + (hasHeader ? kApeFooter : 0);
  return size >= kApeFooter && size <= end - within.begin ? end - size : end;
}

// Whether the counts of the information frame can be believed without looking at every frame.
bool CanTrust(const MpegLayout& layout, int64_t infoBegin) {
  if (!layout.info) return false;
  const MpegInfo& info = *layout.info;
  if (!info.encoderNamed || !info.frames || !info.bytes || *info.frames < 1) return false;
  if (*info.bytes != layout.area.end - infoBegin) return false;
  const double mean = static_cast<double>(layout.area.Size()) / static_cast<double>(*info.frames);
  if (info.constantRate) {
    const double stray = (mean - layout.first.MeanBytes()) * static_cast<double>(*info.frames);
    return std::abs(stray) <= layout.first.MeanBytes() / 2;
  }
  const double bytesPerKbit = layout.first.samples / 8.0 * 1000.0 / layout.first.rate;
  const bool mpeg1 = layout.first.version == MpegVersion::kMpeg1;
  return mean >= (mpeg1 ? 32 : 8) * bytesPerKbit - 1 &&
         mean <= (mpeg1 ? 320 : 160) * bytesPerKbit + 1;
}

}  // namespace

int64_t MpegLayout::SoundBegin() const {
  if (!info || !info->encoderNamed) return 0;
  const int64_t begin = info->delay + kDecoderDelay;
  return begin < frames * first.samples ? begin : 0;
}

int64_t MpegLayout::SoundEnd() const {
  const int64_t end = frames * first.samples;
  // Where frames are missing or more than stated the padding is not at this end.
  if (!info || !info->encoderNamed || !info->frames || *info->frames != frames) return end;
  const int64_t cut = std::max(0, info->padding - kDecoderDelay);
  return end - cut > SoundBegin() ? end - cut : end;
}

int64_t SkipId3v2(FileBytes& file, int64_t offset) {
  for (;;) {
    const uint8_t* tag = file.Peek(offset, 10);
    if (!tag || std::memcmp(tag, "ID3", 3) != 0 || tag[3] == 0xFF || tag[4] == 0xFF) return offset;
    if ((tag[6] | tag[7] | tag[8] | tag[9]) & 0x80) return offset;
    const int64_t size = tag[6] << 21 | tag[7] << 14 | tag[8] << 7 | tag[9];
    const bool hasFooter = tag[5] & 0x10;
    offset += 10 + size + (hasFooter ? 10 : 0);
  }
}

std::optional<MpegLayout> LayOutMpeg(FileBytes& file, ByteSpan within) {
  within.end = EndWithoutTags(file, within);
  within.begin = std::min(SkipId3v2(file, within.begin), within.end);
  const int64_t last = std::min(within.end, within.begin + kMpegSearchBytes);
  const int64_t begin = FindChain(file, within.begin, last, within.end, nullptr);
  if (begin < 0) return std::nullopt;

  MpegLayout layout;
  layout.first = *HeaderAt(file, begin, within.end);
  layout.area = {begin, within.end};
  const auto size =
      std::min<int64_t>({layout.first.bytes, within.end - begin, FileBytes::kMaxPeek});
  const uint8_t* frame = file.Peek(begin, static_cast<size_t>(size));
  if (frame) layout.info = ParseMpegInfo(layout.first, frame, static_cast<size_t>(size));
  if (layout.info) {
    layout.area.begin += layout.first.bytes;
    const auto second = HeaderAt(file, layout.area.begin, within.end);
    if (second && SameStream(*second, layout.first)) layout.first = *second;
  }
  if (CanTrust(layout, begin)) {
    layout.spans = {layout.area};
    layout.frames = *layout.info->frames;
    if (layout.info->constantRate) layout.leastBytes = static_cast<int>(layout.first.MeanBytes());
  } else {
    ScanMpeg(file, layout);
  }
  if (layout.frames == 0) return std::nullopt;
  return layout;
}

void ScanMpeg(FileBytes& file, MpegLayout& layout) {
  layout.spans.clear();
  layout.frames = 0;
  layout.scanned = true;
  const int64_t end = layout.area.end;
  int64_t at = layout.area.begin;
  while (at + 4 <= end) {
    const auto header = HeaderAt(file, at, end);
    if (header && SameStream(*header, layout.first)) {
      if (at + header->bytes > end) return;  // the last frame is cut
      if (layout.spans.empty() || layout.spans.back().end != at) layout.spans.push_back({at, at});
      layout.spans.back().end = at += header->bytes;
      layout.leastBytes =
          layout.frames == 0 ? header->bytes : std::min(layout.leastBytes, header->bytes);
      ++layout.frames;
      continue;
    }
    const int64_t next = FindChain(file, at, end, end, &layout.first);
    if (next < 0) return;
    at = next;
  }
}

}  // namespace zemo
