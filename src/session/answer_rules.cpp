// SPDX-License-Identifier: MIT
// The answers to the accessory's requests, and what an ACK says.
#include "session/answer_rules.h"

#include <cstring>

#include "ipodcomm/ipod.h"
#include "protocol/commands.h"

namespace ipodcomm {

namespace {

constexpr bool kText = true;
constexpr bool kNoText = false;

// lingo, request, answer, least bytes, text; repeated bytes: count, and where in the request
constexpr AnswerRule kRules[] = {
    {kGeneralLingo, general::kRequestIpodName, general::kReturnIpodName, 1, kText},
    {kGeneralLingo, general::kRequestIpodModelNumber, general::kReturnIpodModelNumber, 5, kText},
    {kGeneralLingo, general::kRequestLingoProtocolVersion, general::kReturnLingoProtocolVersion, 3,
     kNoText, 1},
    {kGeneralLingo, general::kRequestMaxPayloadSize, general::kReturnMaxPayloadSize, 2, kNoText},
    {kGeneralLingo, general::kGetIpodPreferences, general::kRetIpodPreferences, 2, kNoText, 1},
    {kGeneralLingo, general::kSetFidTokenValues, general::kRetFidTokenValueAcks, 1, kNoText},
    {kGeneralLingo, general::kEndIdps, general::kIdpsStatus, 1, kNoText},
    {kGeneralLingo, general::kGetIpodOptionsForLingo, general::kRetIpodOptionsForLingo, 9, kNoText,
     1},
    {kGeneralLingo, general::kGetSupportedEventNotification,
     general::kRetSupportedEventNotification, 8, kNoText},

    {kDisplayRemoteLingo, display_remote::kGetIndexedPlayingTrackInfo,
     display_remote::kReturnIndexedPlayingTrackInfo, 1, kNoText, 1},

    {kExtendedLingo, extended::kGetNumberCategorizedDbRecords,
     extended::kReturnNumberCategorizedDbRecords, 4, kNoText},
    {kExtendedLingo, extended::kRetrieveCategorizedDatabaseRecords,
     extended::kReturnCategorizedDatabaseRecord, 5, kText, 4, 1},
    {kExtendedLingo, extended::kGetPlayStatus, extended::kReturnPlayStatus, 9, kNoText},
    {kExtendedLingo, extended::kGetCurrentPlayingTrackIndex,
     extended::kReturnCurrentPlayingTrackIndex, 4, kNoText},
    {kExtendedLingo, extended::kGetIndexedPlayingTrackTitle,
     extended::kReturnIndexedPlayingTrackTitle, 1, kText},
    {kExtendedLingo, extended::kGetIndexedPlayingTrackArtistName,
     extended::kReturnIndexedPlayingTrackArtistName, 1, kText},
    {kExtendedLingo, extended::kGetIndexedPlayingTrackAlbumName,
     extended::kReturnIndexedPlayingTrackAlbumName, 1, kText},
    {kExtendedLingo, extended::kGetShuffle, extended::kReturnShuffle, 1, kNoText},
    {kExtendedLingo, extended::kRetrieveDbTrackInfo, extended::kReturnDbTrackInfo, 9, kNoText, 4},

    {kSportsLingo, sports::kGetIpodCaps, sports::kRetIpodCaps, 3, kNoText},
    {kSportsLingo, sports::kGetUserData, sports::kRetUserData, 2, kNoText, 1},

    {kStorageLingo, storage::kGetIpodCaps, storage::kRetIpodCaps, 22, kNoText},
    {kStorageLingo, storage::kGetIpodFreeSpace, storage::kRetIpodFreeSpace, 8, kNoText},
    {kStorageLingo, storage::kOpenIpodFeatureFile, storage::kRetIpodFileHandle, 1, kNoText},
};

// Of the answers that repeat the kind of what was asked for, one kind is longer than the others.
std::uint32_t LeastBytes(const AnswerRule& rule, const ReceivedFrame& answer) {
  constexpr std::uint8_t kCapabilities = 0;
  constexpr std::uint32_t kCapabilityBytes = 5;
  constexpr std::uint8_t kWeight = 3;
  constexpr std::uint32_t kWeightBytes = 3;
  if (answer.data_length == 0) return rule.least_bytes;
  const std::uint8_t kind = answer.data[0];
  const auto is = [&rule](std::uint8_t lingo, std::uint16_t command) {
    return rule.lingo == lingo && rule.answer == command;
  };
  if (is(kSportsLingo, sports::kRetUserData) && kind == kWeight) return kWeightBytes;
  const bool is_track_info =
      is(kDisplayRemoteLingo, display_remote::kReturnIndexedPlayingTrackInfo);
  return is_track_info && kind == kCapabilities ? kCapabilityBytes : rule.least_bytes;
}

std::uint16_t AckCommand(std::uint8_t lingo) {
  switch (lingo) {
    case kDisplayRemoteLingo:
      return display_remote::kAck;
    case kExtendedLingo:
      return extended::kAck;
    case kSportsLingo:
      return sports::kAck;
    case kStorageLingo:
      return storage::kAck;
    default:
      return general::kAck;
  }
}

}  // namespace

bool MayBeRepeated(const tagIPOD_WRITE_PARAMS& request) {
  if (request.lingo != kExtendedLingo || request.command != extended::kPlayControl) return true;
  if (request.length == 0) return true;
  switch (request.data[0]) {
    case ipod::IPOD_PLAYCONTROL_PLAYPAUSE:
    case ipod::IPOD_PLAYCONTROL_NEXTTRACK:
    case ipod::IPOD_PLAYCONTROL_PREVIOUSTRACK:
    case ipod::IPOD_PLAYCONTROL_NEXT:
    case ipod::IPOD_PLAYCONTROL_PREVIOUS:
      return false;
    default:
      return true;
  }
}

const AnswerRule* FindAnswerRule(std::uint8_t lingo, std::uint16_t request) {
  for (const AnswerRule& rule : kRules) {
    if (rule.lingo == lingo && rule.request == request) return &rule;
  }
  return nullptr;
}

bool IsAck(const ReceivedFrame& frame) { return frame.command == AckCommand(frame.lingo); }

bool ReadAck(const ReceivedFrame& frame, Ack* ack) {
  if (!IsAck(frame)) return false;
  const bool wide = frame.lingo == kExtendedLingo;
  if (frame.data_length < (wide ? 3U : 2U)) return false;
  const FrameBytes data(frame.data, frame.data_length);
  *ack = {data[0], wide ? data.Number16(1) : std::uint16_t{data[1]}};
  return true;
}

std::uint32_t PendingMs(const ReceivedFrame& ack) {
  const std::uint32_t time_at = ack.lingo == kExtendedLingo ? 3 : 2;
  if (ack.data_length < time_at + 4) return 0;
  return FrameBytes(ack.data, ack.data_length).Number32(time_at);
}

bool IsWhole(const AnswerRule& rule, const ReceivedFrame& answer) {
  if (answer.data_length < LeastBytes(rule, answer)) return false;
  return !rule.ends_with_text || answer.data[answer.data_length - 1] == 0;
}

bool Repeats(const AnswerRule& rule, const tagIPOD_WRITE_PARAMS& request,
             const ReceivedFrame& answer) {
  const std::uint32_t count = rule.repeated_bytes;
  if (count == 0) return true;
  if (request.length < rule.repeated_at_request + count || answer.data_length < count) {
    return false;
  }
  return std::memcmp(request.data + rule.repeated_at_request, answer.data, count) == 0;
}

}  // namespace ipodcomm
