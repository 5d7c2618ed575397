// SPDX-License-Identifier: MIT
// ipod: the commands, each with its lingo, command and payload. What a payload does not name keeps
// the bytes of the command before.
#include "ipodcomm/ipod.h"
#include "legacy/payload.h"
#include "platform/services.h"
#include "protocol/numbers.h"

using ipodcomm::Number16;
using ipodcomm::Number32;

namespace {

void TraceSelection(const wchar_t* format, std::uint8_t category, unsigned long index) {
  unsigned char bytes[4] = {};
  ipodcomm::WriteNumber32(bytes, static_cast<std::uint32_t>(index));
  NKDbgPrintfW(format, category, bytes[0], bytes[1], bytes[2], bytes[3]);
}

}  // namespace

// ---- General -----------------------------------------------------------------------------------

int ipod::command_requestremoteuimode() {
  return SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_REQUESTREMOTEUIMODE, {});
}

int ipod::command_enterremoteuimode() {
  constexpr DWORD kSecondWaitPauseMs = 20;
  constexpr unsigned char kCapacity = 128;
  if (SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_ENTERREMOTEUIMODE, {}) == 0) return 0;
  // Whether the iPod accepts or refuses is not looked at: hosts in the field go on after either.
  wchar_t text[kCapacity] = {};
  if (extractdatafrompacket(IPOD_COMMAND_ACK, text, kCapacity, 0, 0) != 0) return 1;
  Sleep(kSecondWaitPauseMs);
  return extractdatafrompacket(IPOD_COMMAND_ACK, text, kCapacity, 0, 0);
}

int ipod::command_exitremoteuimode() {
  return SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_EXITREMOTEUIMODE, {});
}

int ipod::command_requestipodname() {
  return SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_REQUESTIPODNAME, {});
}

int ipod::command_requestipodsoftwareversion() {
  return SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_REQUESTIPODSOFTWAREVERSION, {});
}

int ipod::command_requestipodserialnum() {
  return SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_REQUESTIPODSERIALNUM, {});
}

int ipod::command_requestipodmodelnum() {
  return SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_REQUESTIPODMODELNUM, {});
}

// Goes out under the lingo of the command before and always asks for the version of lingo 0. Hosts
// in the field show what iPods answer to just that.
int ipod::command_requestlingoprotocolversion(unsigned char /*ignored_lingo*/) {
  return SendSmall(lingo_, IPOD_COMMAND_REQUESTLINGOPROTOCOLVERSION, {IPOD_LINGO_GENERAL});
}

int ipod::command_getipodpreference(unsigned char preference_class) {
  return SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_GETIPODPREFERENCES, {preference_class});
}

int ipod::command_setipodpreference(unsigned char preference_class, unsigned char setting) {
  constexpr unsigned char kRestoreOnExit = 1;
  return SendSmall(IPOD_LINGO_GENERAL, IPOD_COMMAND_SETIPODPREFERENCES,
                   {preference_class, setting, kRestoreOnExit});
}

// ---- Simple Remote and Display Remote ----------------------------------------------------------

int ipod::command_buttonstatus(unsigned char command, unsigned long buttons) {
  constexpr DWORD kPressMs = 30;
  const auto byte = [buttons](int shift) { return static_cast<std::uint8_t>(buttons >> shift); };
  // The only number whose least significant byte goes first.
  if (SendSmall(IPOD_LINGO_SIMPLEREMOTE, command, {byte(0), byte(8), byte(16), byte(24)}) == 0) {
    return 0;
  }
  Sleep(kPressMs);
  return SendSmall(IPOD_LINGO_SIMPLEREMOTE, command, {0, 0, 0, 0});
}

int ipod::command_contextbutton(unsigned long buttons) {
  return command_buttonstatus(IPOD_COMMAND_CONTEXTBUTTONSTATUS, buttons);
}

int ipod::command_remote_getindexedplayingtrackinfo(unsigned char type, unsigned long track,
                                                    unsigned short chapter) {
  return SendSmall(IPOD_LINGO_DISPLAY, IPOD_COMMAND_REMOTE_GETINDEXEDPLAYINGTRACKINFO,
                   {type, Number32(track), Number16(chapter)});
}

// ---- Sports and Storage ------------------------------------------------------------------------

int ipod::command_sportsgetipodcaps() {
  return SendSmall(IPOD_LINGO_SPORTS, IPOD_COMMAND_SPORTS_GETIPODCAPS, {});
}

int ipod::command_storagegetipodcaps() {
  return SendSmall(IPOD_LINGO_STORAGE, IPOD_COMMAND_STORAGE_GETIPODCAPS, {});
}

// ---- Extended Interface: what is playing -------------------------------------------------------

int ipod::command_getplaystatus() {
  // The track's length and position are shown from the payload area, and start from this byte.
  payload_[0] = 0;
  return SendExtended(IPOD_COMMAND_GETPLAYSTATUS, {});
}

int ipod::command_getcurrentplayingtrackchaptername() {
  return SendExtended(IPOD_COMMAND_GETCURRENTPLAYINGTRACKCHAPTERNAME, {});
}

int ipod::command_getcurrentplayingtrackindex() {
  return SendExtended(IPOD_COMMAND_GETCURRENTPLAYINGTACKINDEX, {});
}

int ipod::command_getindexedplayingtracktitle(unsigned long track) {
  return SendExtended(IPOD_COMMAND_GETINDEXPLAYINGTRACKTITLE, {Number32(track)});
}

int ipod::command_getindexedplayingtrackinfo(unsigned char type, unsigned long track,
                                             unsigned short chapter) {
  return SendExtended(IPOD_COMMAND_GETINDEXEDPLAYINGTRACKINFO,
                      {type, Number32(track), Number16(chapter)});
}

int ipod::command_playcontrol(unsigned char code) {
  constexpr unsigned char kCapacity = 25;
  if (SendExtended(IPOD_COMMAND_PLAYCONTROL, {code}) == 0) return 0;
  // A missing reply leaves the status at 0 and counts as accepted: hosts in the field take 0 for
  // the iPod's refusal.
  wchar_t text[kCapacity] = {};
  ExtractDataFromPacketExtended(IPOD_COMMAND_EXTENDEDACK, text, kCapacity, 0, 0);
  return text[0] == IPOD_ACKE_STATUS_OK ? 1 : 0;
}

// ---- Extended Interface: browsing --------------------------------------------------------------

int ipod::command_getnumbercategorizeddbrecords() {
  return SendExtended(IPOD_COMMAND_GETNUMBERCATORIZEDDBRECORDS, {category_});
}

int ipod::command_retrievecategorizeddbrecords(unsigned long start) {
  return SendExtended(IPOD_COMMAND_RETRIEVECATEGORIZEDDATABASERECORDS,
                      {category_, Number32(start), Number32(1)});
}

int ipod::command_resetdbselection() { return SendExtended(IPOD_COMMAND_RESETDBSELECTION, {}); }

int ipod::command_resetdbselectionhierarchy(unsigned char hierarchy) {
  return SendExtended(IPOD_COMMAND_RESETDBSELECTIONHIERARCHY, {hierarchy});
}

int ipod::command_selectdbrecord(unsigned long index) {
  TraceSelection(L"SelectDBRecord, Data 0-4, %d %d %d %d %d\n", category_, index);
  return SendExtended(IPOD_COMMAND_SELECTDBRECORD, {category_, Number32(index)});
}

int ipod::command_selectsortdbrecord(unsigned long index, unsigned char sort_order) {
  TraceSelection(L"SelectSortDBRecord, Data 0-4, %d %d %d %d %d\n", category_, index);
  return SendExtended(IPOD_COMMAND_SELECTSORTDBRECORD, {category_, Number32(index), sort_order});
}

// ---- Extended Interface: artwork and display ---------------------------------------------------

int ipod::command_getmonodisplayimagelimits() {
  return SendExtended(IPOD_COMMAND_GETMONODISPLAYIMAGELIMITS, {});
}

int ipod::command_getartworkformats() { return SendExtended(IPOD_COMMAND_GETARTWORKFORMATS, {}); }

// Sends the Display Remote's number of this request under the Extended Interface: iPods in the
// field are asked so, and hosts there read what they answer.
int ipod::command_gettrackartworktimes(unsigned long track, unsigned short format_id,
                                       unsigned short artwork_index, unsigned short count) {
  return SendExtended(
      IPOD_COMMAND_REMOTE_GETTRACKARTWORKTIMES,
      {Number32(track), Number16(format_id), Number16(artwork_index), Number16(count)});
}

int ipod::command_gettrackartworkdata(unsigned long track, unsigned short format_id,
                                      unsigned long time_offset) {
  return SendExtended(IPOD_COMMAND_GETTRACKARTWORKDATA,
                      {Number32(track), Number16(format_id), Number32(time_offset)});
}
