// SPDX-License-Identifier: MIT
// ipod: what the iPod has of artwork.
#include <algorithm>
#include <cstddef>
#include <iterator>

#include "ipodcomm/ipod.h"
#include "legacy/reply_text.h"
#include "platform/services.h"

using ipodcomm::kIgnored;
using ipodcomm::kReplyCharacters;
using ipodcomm::ReplyByte;
using ipodcomm::Store;

namespace {

constexpr std::uint8_t kFill = 0x55;

// A reply in a buffer filled beforehand, so that a walk over its records sees where it ends.
struct FilledReply {
  wchar_t characters[256];

  FilledReply() { std::fill(std::begin(characters), std::end(characters), wchar_t{kFill}); }
  // What lies behind the buffer reads as 0.
  std::uint8_t operator[](std::size_t position) const {
    return position < std::size(characters) ? ReplyByte(characters[position]) : std::uint8_t{0};
  }
  std::uint16_t Number16(std::size_t position) const {
    return static_cast<std::uint16_t>((*this)[position] << 8 | (*this)[position + 1]);
  }
};

// `id(2) pixel format(1) width(2) height(2)`, repeated.
void StoreFormatIds(const FilledReply& reply, unsigned short* format_ids) {
  constexpr std::size_t kRecordBytes = 7;
  constexpr std::size_t kMaxRecords = 20;
  constexpr std::size_t kPixelFormatPosition = 2;
  for (std::size_t record = 0; record < kMaxRecords; ++record) {
    const std::size_t position = record * kRecordBytes;
    if (reply[position + kPixelFormatPosition] == kFill) return;
    Store(format_ids + record, reply.Number16(position));
  }
}

// The walk starts at the information type, not behind it, so the value stored is made of the type
// and half a format identifier; and the end is looked for byte by byte while the entries are four
// bytes long. Hosts in the field ask for artwork with the value that comes of it.
void StoreArtworkCount(const FilledReply& reply, unsigned short* value) {
  constexpr std::size_t kEntryBytes = 4;
  constexpr std::size_t kMaxEntries = 256;
  for (std::size_t entry = 0; entry < kMaxEntries && reply[entry] != kFill; ++entry) {
    const std::size_t position = entry * kEntryBytes;
    if (reply.Number16(position + 3) == 0) continue;
    Store(value, reply.Number16(position));
    return;
  }
}

}  // namespace

int ipod::getartworkformats(unsigned short* format_ids, unsigned char* count) {
  // It stays 0: hosts in the field count the identifiers themselves.
  Store(count, 0);
  if (!command_getartworkformats()) return 0;
  FilledReply reply;
  const int read = ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNARTWORKFORMATS,
                                                 reply.characters, kReplyCharacters, 0, kIgnored);
  if (format_ids != nullptr) StoreFormatIds(reply, format_ids);
  return read;
}

int ipod::getindexedplayingtrackartworkcount(unsigned long track, unsigned short* value) {
  if (!command_getindexedplayingtrackinfo(IPOD_PLAYINGTRACKINFO_ARTWORKCOUNT, track, 0)) return 0;
  FilledReply reply;
  const int read = ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNINDEXEDPLAYINGTACKINFO,
                                                 reply.characters, kReplyCharacters, 0, kIgnored);
  StoreArtworkCount(reply, value);
  return read;
}

int ipod::gettrackartworktimes(unsigned long track, unsigned short format_id, unsigned long* time) {
  if (!command_gettrackartworktimes(track, format_id, 0, 1)) return 0;
  FilledReply reply;
  if (!ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNTRACKARTWORKTIMES, reply.characters,
                                     kReplyCharacters, 0, kIgnored)) {
    return 0;
  }
  // The lower half is the sum of its two bytes and 256: iPods in the field are asked for their
  // artwork with the time that this makes.
  Store(time, (static_cast<std::uint32_t>(reply.Number16(0)) << 16) + reply[2] + reply[3] + 256U);
  return 1;
}

int ipod::getcurrenttrackartworkdata(unsigned short format_id) {
  unsigned long track = 0;
  if (!getcurrentplayingtrackindex(&track)) return 0;
  // What the count stores takes the place of the format identifier, and neither of the two results
  // matters: iPods in the field are asked for their artwork under that number.
  getindexedplayingtrackartworkcount(track, &format_id);
  unsigned long time = 0;
  gettrackartworktimes(track, format_id, &time);
  if (!command_gettrackartworkdata(track, format_id, time)) return 0;
  wchar_t reply[kReplyCharacters] = {};
  return ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNTRACKARTWORKDATA, reply, kReplyCharacters,
                                       0, kIgnored);
}
