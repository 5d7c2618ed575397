// SPDX-License-Identifier: MIT
// ipod: what is playing, and pausing it.
#include <cstddef>

#include "ipodcomm/ipod.h"
#include "legacy/reply_text.h"
#include "platform/services.h"
#include "protocol/numbers.h"

using ipodcomm::kIgnored;
using ipodcomm::kReplyCharacters;
using ipodcomm::ReplyByte;
using ipodcomm::ShowText;
using ipodcomm::Store;

namespace {

// GetPlayStatus' answer: length (4 bytes), position (4 bytes), state.
constexpr unsigned char kLengthPosition = 0;
constexpr unsigned char kPositionPosition = 4;
constexpr unsigned char kStatePosition = 8;

constexpr unsigned char kNoState = 255;

constexpr const char* kStateTexts[] = {
    "Stopped", "Playing", "Paused", "Fast Forward", "Fast Rewind", "Ending Fast Forward or Rewind"};
constexpr std::size_t kStates = sizeof kStateTexts / sizeof *kStateTexts;

}  // namespace

int ipod::getipodplayerstatenum(unsigned char* state) {
  Store(state, kNoState);
  if (!command_getplaystatus()) return 0;
  wchar_t reply[2] = {};
  if (!ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNPLAYSTATUS, reply, 2, kStatePosition,
                                     kIgnored)) {
    return 0;
  }
  Store(state, ReplyByte(reply[0]));
  return 1;
}

int ipod::GetIpodPlayerStateNumEx(unsigned char* state, unsigned long* length,
                                  unsigned long* position) {
  Store(state, kNoState);
  Store(length, 0);
  Store(position, 0);
  if (!command_getplaystatus()) return 0;
  unsigned char reply[25] = {};
  if (!ExtractDataFromPacketExtendedRaw(IPOD_COMMAND_RETURNPLAYSTATUS, reply, sizeof reply)) {
    return 0;
  }
  Store(length, ipodcomm::ReadNumber32(reply + kLengthPosition));
  Store(position, ipodcomm::ReadNumber32(reply + kPositionPosition));
  Store(state, reply[kStatePosition]);
  return 1;
}

int ipod::getipodplayerstate(wchar_t* text) {
  ShowText(text, "Unknown");
  unsigned char state = kNoState;
  const int read = getipodplayerstatenum(&state);
  if (state < kStates) ShowText(text, kStateTexts[state]);
  return read;
}

int ipod::isplaying() {
  unsigned char state = kNoState;
  return getipodplayerstatenum(&state) && state == IPOD_PLAYERSTATE_PLAYING;
}

// Once the reply has been extracted, what is shown is the number at the front of the outgoing
// payload, not the reply's, so length and position read alike. Screens in the field show it;
// GetIpodPlayerStateNumEx has the true values. The request clears the first of the four bytes, so
// the number has at most eight digits.
wchar_t* ipod::ShowPlayTime(wchar_t* text, unsigned char offset) {
  ShowText(text, "Unknown");
  if (!command_getplaystatus()) return text;
  wchar_t reply[5] = {};
  if (ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNPLAYSTATUS, reply, 5, offset, kIgnored)) {
    StringCchPrintfW(text, SIZE_IPODTRACKLENGTH, L"%d",
                     static_cast<int>(ipodcomm::ReadNumber32(payload_)));
  }
  return text;
}

wchar_t* ipod::getipodtracklength() { return ShowPlayTime(track_length_text_, kLengthPosition); }

wchar_t* ipod::getipodtrackposition() {
  return ShowPlayTime(track_position_text_, kPositionPosition);
}

int ipod::getcurrentplayingtrackindex(unsigned long* index) {
  if (!command_getcurrentplayingtrackindex()) return 0;
  wchar_t reply[5] = {};
  const int read = ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNCURRENTPLAYINGTRACKINDEX, reply,
                                                 5, 0, kIgnored);
  // Stored without an answer as well, then as 0: hosts in the field go on with the first track.
  Store(index, ipodcomm::ReplyNumber32(reply));
  return read;
}

int ipod::getindexedplayingtracktitle(wchar_t* text) {
  ipodcomm::HostText<kReplyCharacters> title(text);
  *title.get() = L'\0';
  unsigned long track = 0;
  const int read = getcurrentplayingtrackindex(&track) &&
                   command_getindexedplayingtracktitle(track) &&
                   ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNINDEXEDPLAYINGTRACKTITLE,
                                                 title.get(), kReplyCharacters, 0, kIgnored);
  utf8tounicode(title.get());
  return read;
}

int ipod::getipodcurrentplayingtrackchaptername(wchar_t* text) {
  constexpr unsigned char kCharacters = SIZE_IPODCURRENTPLAYINGTRACKCHAPTERNAME;
  ipodcomm::HostText<kCharacters> name(text);
  ShowText(name.get(), "Unknown");
  const int read = command_getcurrentplayingtrackchaptername() &&
                   ExtractDataFromPacketExtended(IPOD_COMMAND_RETURNCURRENTPLAYINGTRACKCHAPTERNAME,
                                                 name.get(), kCharacters, 0, kIgnored);
  ipodcomm::EndBehindWholeCharacter(name.get(), kCharacters);
  utf8tounicode(name.get());
  return read;
}

int ipod::iscurrentvideo(int* flag) {
  constexpr unsigned char kCapabilitiesPosition = 4;
  unsigned long track = 0;
  if (!getcurrentplayingtrackindex(&track)) return 0;
  if (!command_remote_getindexedplayingtrackinfo(IPOD_REMOTE_INFOTYPE_CAPSINFO, track, 0)) return 0;
  wchar_t reply[25] = {};
  if (!extractdatafrompacket(IPOD_COMMAND_REMOTE_RETURNINDEXEDPLAYINGTRACKINFO, reply, 25, 0,
                             kIgnored)) {
    return 0;
  }
  // The bit as it stands in the byte, 0x80, not 1.
  Store(flag, ReplyByte(reply[kCapabilitiesPosition]) & IPOD_REMOTE_INFOTYPE_MASK_CAPSINFO_VIDEO);
  return 1;
}

int ipod::pausestop() {
  unsigned char state = kNoState;
  if (!getipodplayerstatenum(&state)) return 0;
  if (state != IPOD_PLAYERSTATE_PLAYING) return 1;
  return command_playcontrol(static_cast<unsigned char>(IPOD_PLAYCONTROL_PLAYPAUSE));
}
