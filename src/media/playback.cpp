// SPDX-License-Identifier: MIT
// CIpodComm: controlling playback, and what is playing.
#include "identify/lingo_versions.h"
#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/ipod.h"
#include "protocol/commands.h"
#include "protocol/numbers.h"
#include "protocol/text.h"
#include "session/exchange.h"

using ipodcomm::Answer;
using ipodcomm::Command;
using ipodcomm::kExtendedLingo;
namespace extended = ipodcomm::extended;

namespace {

constexpr std::size_t kTextBytes = 256;

// Bytes of a button mask that go out, least significant first: up to the first one that is not
// zero, so higher buttons pressed together with lower ones are left out. Hosts press one at a time,
// and iPods have always been sent so.
std::size_t ButtonBytes(const unsigned char (&mask)[4]) {
  for (std::size_t i = 0; i < sizeof mask; ++i) {
    if (mask[i] != 0) return i + 1;
  }
  return 1;  // all buttons released
}

}  // namespace

int CIpodComm::Command_PlayControl(unsigned char code) {
  const bool play = code == ipod::IPOD_PLAYCONTROL_PLAY;
  const bool pause = code == ipod::IPOD_PLAYCONTROL_PAUSE;
  if (conduct_.robust != 0 && (play || pause) && !KnowsPlayAndPause()) return PlayOrPause(play);
  return SendPlayControl(code);
}

bool CIpodComm::KnowsPlayAndPause() const { return ipodcomm::AtLeast(identity_.extended, {1, 13}); }

// Toggles the player where it has to change. When no ACK comes, the state tells whether it has.
int CIpodComm::PlayOrPause(bool play) {
  for (std::int32_t attempt = 0; attempt < ipodcomm::kAttempts; ++attempt) {
    unsigned char state = 0;
    unsigned long length = 0;
    unsigned long position = 0;
    if (Command_GetPlayStatus(&state, &length, &position) == 0) return 0;
    const bool plays =
        state != ipod::IPOD_PLAYERSTATE_STOPPED && state != ipod::IPOD_PLAYERSTATE_PAUSED;
    if (plays == play || SendPlayControl(ipod::IPOD_PLAYCONTROL_PLAYPAUSE) != 0) return 1;
    if (last_exchange_.result == IPOD_EXCHANGE_REFUSED) return 0;
  }
  return 0;
}

int CIpodComm::SendPlayControl(unsigned char code) {
  const unsigned char data[] = {code};
  return ExchangeForLoggedAck(Command(kExtendedLingo, extended::kPlayControl, data),
                              L"CIpodComm::Command_PlayControl",
                              L"Failed to control! Ack = 0x%02X");
}

tagIPOD_COMM_ERROR CIpodComm::Command_SimplePlayControl(unsigned long buttons) {
  const unsigned char mask[4] = {
      static_cast<unsigned char>(buttons), static_cast<unsigned char>(buttons >> 8),
      static_cast<unsigned char>(buttons >> 16), static_cast<unsigned char>(buttons >> 24)};
  unsigned char ack[3] = {};
  tagIPOD_WRITE_PARAMS write =
      Command(ipodcomm::kSimpleRemoteLingo, ipodcomm::simple_remote::kContextButtonStatus, mask,
              ButtonBytes(mask));
  tagIPOD_READ_PARAMS read = Answer(extended::kAck, ack);
  return WriteReadCommand(&write, &read);
}

int CIpodComm::Command_GetPlayStatus(unsigned char* state, unsigned long* length,
                                     unsigned long* position) {
  unsigned char reply[9] = {};
  if (!Exchange(Command(kExtendedLingo, extended::kGetPlayStatus),
                Answer(extended::kReturnPlayStatus, reply)))
    return 0;
  *length = ipodcomm::ReadNumber32(reply);
  *position = ipodcomm::ReadNumber32(reply + 4);
  *state = reply[8];
  return 1;
}

int CIpodComm::Command_GetCurrentPlayingTrackIndex(unsigned long* index) {
  unsigned char reply[4] = {};
  if (!Exchange(Command(kExtendedLingo, extended::kGetCurrentPlayingTrackIndex),
                Answer(extended::kReturnCurrentPlayingTrackIndex, reply)))
    return 0;
  *index = ipodcomm::ReadNumber32(reply);
  return 1;
}

int CIpodComm::Command_RetrieveDBTrackTime(unsigned long track, unsigned long* seconds) {
  if (identity_.database_track_info == 0) return 0;
  constexpr std::uint32_t kOneTrack = 1;
  constexpr unsigned char kTrackTime = 0x40;
  unsigned char data[9] = {};
  ipodcomm::WriteNumber32(data, static_cast<std::uint32_t>(track));
  ipodcomm::WriteNumber32(data + 4, kOneTrack);
  data[8] = kTrackTime;
  unsigned char reply[20] = {};
  if (!Exchange(Command(kExtendedLingo, extended::kRetrieveDbTrackInfo, data),
                Answer(extended::kReturnDbTrackInfo, reply)))
    return 0;
  *seconds = ipodcomm::ReadNumber32(reply + 5) / 1000;
  return 1;
}

int CIpodComm::SetNotification(unsigned long mask) {
  unsigned char bits[4] = {};
  ipodcomm::WriteNumber32(bits, static_cast<std::uint32_t>(mask));
  unsigned char status = 0;
  if (ExchangeForExtendedAck(
          Command(kExtendedLingo, extended::kSetPlayStatusChangeNotification, bits), &status) &&
      status == 0) {
    return 1;
  }
  const unsigned char all_or_none[] = {static_cast<unsigned char>(mask != 0 ? 1 : 0)};
  return ExchangeForExtendedAck(
             Command(kExtendedLingo, extended::kSetPlayStatusChangeNotification, all_or_none),
             &status) &&
         status == 0;
}

int CIpodComm::Command_GetShuffle(unsigned long* mode) {
  unsigned char reply[1] = {};
  if (!Exchange(Command(kExtendedLingo, extended::kGetShuffle),
                Answer(extended::kReturnShuffle, reply)))
    return 0;
  if (mode != nullptr) *mode = reply[0];
  return 1;
}

// The second byte is the negation of `keep`, where Command_SetRepeat sends its flag as it is. Hosts
// in the field pass each of the two in its own sense.
int CIpodComm::Command_SetShuffle(unsigned long mode, int keep) {
  const unsigned char data[] = {static_cast<unsigned char>(mode),
                                static_cast<unsigned char>(keep == 0 ? 1 : 0)};
  return ExchangeForExtendedAck(Command(kExtendedLingo, extended::kSetShuffle, data), nullptr);
}

int CIpodComm::Command_SetRepeat(unsigned char mode, int restore) {
  const unsigned char data[] = {mode, static_cast<unsigned char>(restore != 0 ? 1 : 0)};
  return ExchangeForExtendedAck(Command(kExtendedLingo, extended::kSetRepeat, data), nullptr);
}

int CIpodComm::GetPlayInfo(unsigned long* index, int* flag, wchar_t* title,
                           unsigned long title_chars, wchar_t* artist, unsigned long artist_chars,
                           wchar_t* album, unsigned long album_chars) {
  unsigned long track = 0;
  if (Command_GetCurrentPlayingTrackIndex(&track) == 0) return 0;
  if (index != nullptr) *index = track;
  GetPlayingText(&CIpodComm::Command_GetIndexedPlayingTrackTitle, track, title, title_chars);
  GetPlayingText(&CIpodComm::Command_GetIndexedPlayingTrackArtistName, track, artist, artist_chars);
  GetPlayingText(&CIpodComm::Command_GetIndexedPlayingTrackAlbumName, track, album, album_chars);
  if (flag != nullptr) {
    constexpr unsigned char kCapabilities = 0;
    unsigned char reply[10] = {};
    *flag = 0;
    if (Command_GetIndexedPlayingTrackInfo(kCapabilities, track, 0, reply, sizeof reply) != 0 &&
        (reply[4] & 0x80) != 0) {
      *flag = 1;
    }
  }
  return 1;
}

// A text that was not asked for or cannot be read leaves its buffer as it was.
void CIpodComm::GetPlayingText(TrackTextRequest request, unsigned long track, wchar_t* text,
                               unsigned long chars) {
  if (text == nullptr) return;
  unsigned char utf8[kTextBytes] = {};
  if ((this->*request)(track, utf8, sizeof utf8) == 0) return;
  ipodcomm::ClearCutCharacter(utf8, sizeof utf8);
  ipodcomm::TextFromUtf8(utf8, sizeof utf8, text, chars);
}
