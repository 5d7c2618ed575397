// SPDX-License-Identifier: MIT
// Asks the player, and waits for it.
#include "playing/player.h"

#include "console/failure.h"
#include "console/interrupt.h"
#include "console/text.h"
#include "ipodcomm/ipod.h"

namespace ipodctl {

namespace {

constexpr unsigned long kNoTrack = 0xFFFFFFFF;
constexpr std::size_t kTextBytes = 1024;  // no frame carries a longer text
constexpr int kLooks = 20;
constexpr unsigned kLookMs = 100;

using TextOperation = int (CIpodComm::*)(unsigned long, unsigned char*, unsigned long);

// None when the iPod refuses to tell it.
std::optional<std::string> ReadText(Session& session, TextOperation read, unsigned long index,
                                    const char* what) {
  unsigned char bytes[kTextBytes + 1] = {};
  if ((session.ipod().*read)(index, bytes, kTextBytes) != 0) {
    return Utf8(Wide(reinterpret_cast<const char*>(bytes)).c_str());
  }
  if (session.WasRefused()) return std::nullopt;
  session.Require(false, std::string("tell the ") + what + " of what it is playing");
  return std::nullopt;
}

std::optional<bool> ReadVideo(Session& session, unsigned long index) {
  constexpr unsigned char kCapabilities = 0;
  constexpr unsigned char kVideoBit = 0x80;
  constexpr std::size_t kVideoByte = 4;
  if (!session.tells_track_info()) return std::nullopt;
  unsigned char reply[10] = {};
  if (session.ipod().Command_GetIndexedPlayingTrackInfo(kCapabilities, index, 0, reply,
                                                        sizeof reply) == 0) {
    session.Require(session.WasRefused(), "tell whether it is playing a video");
    session.NoteNoTrackInfo();
    return std::nullopt;
  }
  return (reply[kVideoByte] & kVideoBit) != 0;
}

}  // namespace

std::string StateName(unsigned char state) {
  switch (state) {
    case kStopped:
      return "stopped";
    case kPlaying:
      return "playing";
    case kPaused:
      return "paused";
    case kWindingForward:
      return "winding forward";
    case kWindingBack:
      return "winding back";
    case 5:
      return "ending winding";
    default:
      return "state " + std::to_string(state);
  }
}

std::string WhatItDoes(const NowPlaying& now) {
  if (!now.index) return StateName(now.state);
  const std::string track = "track " + std::to_string(*now.index + 1);
  return StateName(now.state) + (now.state == kPlaying ? " " : " on ") + track +
         (now.title ? ", '" + ShownName(*now.title) + "'" : "");
}

NowPlaying LookAtPlayer(Session& session) {
  NowPlaying now;
  unsigned long length_ms = 0;
  unsigned long position_ms = 0;
  CIpodComm& ipod = session.ipod();
  session.Require(ipod.Command_GetPlayStatus(&now.state, &length_ms, &position_ms) != 0,
                  "tell its play status");
  if (now.state == kStopped) return now;
  now.length_ms = length_ms;
  now.position_ms = position_ms;
  unsigned long index = kNoTrack;
  session.Require(ipod.Command_GetCurrentPlayingTrackIndex(&index) != 0,
                  "tell which track it is playing");
  // Without a track the iPod refuses each text.
  if (index != kNoTrack) now.index = index;
  return now;
}

std::optional<std::string> ReadTitle(Session& session, NowPlaying* now) {
  if (now->title || !now->index) return now->title;
  now->title =
      ReadText(session, &CIpodComm::Command_GetIndexedPlayingTrackTitle, *now->index, "title");
  return now->title;
}

void ReadTexts(Session& session, NowPlaying* now) {
  if (!now->index) return;
  ReadTitle(session, now);
  now->artist = ReadText(session, &CIpodComm::Command_GetIndexedPlayingTrackArtistName, *now->index,
                         "artist");
  now->album =
      ReadText(session, &CIpodComm::Command_GetIndexedPlayingTrackAlbumName, *now->index, "album");
  now->video = ReadVideo(session, *now->index);
}

NowPlaying ReadNowPlaying(Session& session) {
  NowPlaying now = LookAtPlayer(session);
  ReadTexts(session, &now);
  return now;
}

void Refresh(Session& session, NowPlaying* now) {
  NowPlaying fresh = LookAtPlayer(session);
  if (!fresh.index || fresh.index != now->index) {
    ReadTexts(session, &fresh);
    *now = fresh;
    return;
  }
  now->state = fresh.state;
  now->length_ms = fresh.length_ms;
  now->position_ms = fresh.position_ms;
}

std::optional<unsigned long> CountPlayingTracks(Session& session) {
  const tagIPOD_WRITE_PARAMS count = {ipod::IPOD_COMMAND_GETNUMPLAYINGTRACKS,
                                      ipod::IPOD_LINGO_EXTENDED, nullptr, 0};
  const auto data = session.Exchange(count, ipod::IPOD_COMMAND_RETURNNUMPLAYINGTRACKS);
  if (!data || data->size() < 4) return std::nullopt;
  unsigned long number = 0;
  for (std::size_t i = 0; i < 4; ++i) number = number << 8 | (*data)[i];
  return number;
}

NowPlaying AwaitLook(const std::function<NowPlaying()>& look,
                     const std::function<bool(NowPlaying& now)>& there) {
  for (int looks = 1;; ++looks) {
    NowPlaying now = look();
    if (there(now) || looks == kLooks) return now;
    if (!PauseMs(kLookMs)) StopIfInterrupted();
  }
}

Press PressButton(Session& session, unsigned char button) {
  const bool accepted = session.ipod().Command_PlayControl(button) != 0;
  return {accepted, session.Last()};
}

void FailPress(Session& session, const Press& press, const std::string& what, const NowPlaying& now,
               const std::string& advice) {
  if (!press.accepted) session.Fail(press.exchange, what + "; it is " + WhatItDoes(now) + advice);
  StopIfInterrupted();
  const std::string instead = "is " + WhatItDoes(now) + advice;
  throw CommandFailure(kFailed, press.pressed() ? "the iPod accepted, but " + instead
                                                : "cannot " + what + ": the iPod " + instead);
}

}  // namespace ipodctl
