// SPDX-License-Identifier: MIT
// ipod: what the iPod tells about itself, as text for the console's screen.
#include "ipodcomm/ipod.h"
#include "legacy/reply_text.h"
#include "platform/services.h"

using ipodcomm::kIgnored;
using ipodcomm::kReplyCharacters;
using ipodcomm::ReplyByte;
using ipodcomm::ShowText;

int ipod::getipodsoftwareversion(wchar_t* text, unsigned long size) {
  const bool has_room = text != nullptr && size != 0;
  if (has_room) *text = L'\0';
  if (!command_requestipodsoftwareversion()) return 0;
  wchar_t reply[4] = {};
  if (extractdatafrompacket(IPOD_COMMAND_RETURNIPODSOFTWAREVERSION, reply, 4, 0, kIgnored) &&
      has_room) {
    StringCchPrintfW(text, size, L"%d.%d.%d", ReplyByte(reply[0]), ReplyByte(reply[1]),
                     ReplyByte(reply[2]));
  }
  // A major version of 0 reads as a failure, and hosts in the field take it for one, although the
  // text is there.
  return ReplyByte(reply[0]) != 0;
}

int ipod::getipodmodelnum(wchar_t* text) {
  ShowText(text, "");
  if (!command_requestipodmodelnum()) return 0;
  wchar_t reply[25] = {};
  if (!extractdatafrompacket(IPOD_COMMAND_RETURNIPODMODELNUM, reply, 25, 0, kIgnored)) return 0;
  if (text != nullptr) {
    wsprintfW(text, L"%02x%02x|%02x%02x", ReplyByte(reply[0]), ReplyByte(reply[1]),
              ReplyByte(reply[2]), ReplyByte(reply[3]));
  }
  return 1;
}

int ipod::getipodprotocolversion(wchar_t*) { return 0; }

int ipod::getipodlingoversion(wchar_t* text, unsigned char ignored_lingo) {
  ShowText(text, "");
  if (!command_requestlingoprotocolversion(ignored_lingo)) return 0;
  wchar_t reply[25] = {};
  if (!extractdatafrompacket(IPOD_COMMAND_RETURNLINGOPROTOCOLVERSION, reply, 25, 0, kIgnored)) {
    return 0;
  }
  if (text != nullptr) {
    StringCchPrintfW(text, SIZE_IPODLINGOVERSIONGENERAL, L"%d - %d.%d", ReplyByte(reply[0]),
                     ReplyByte(reply[1]), ReplyByte(reply[2]));
  }
  return 1;
}

// Extracts a reply's UTF-8 text straight into the host's and converts it there. That is done after
// a failure too, when the text is empty.
int ipod::ReadGeneralText(int sent, unsigned char reply_command, unsigned char offset,
                          wchar_t* text) {
  ipodcomm::HostText<kReplyCharacters> target(text);
  *target.get() = L'\0';
  const int read = sent && extractdatafrompacket(reply_command, target.get(), kReplyCharacters,
                                                 offset, kIgnored);
  ipodcomm::EndBehindWholeCharacter(target.get(), kReplyCharacters);
  utf8tounicode(target.get());
  return read;
}

int ipod::getipodname(wchar_t* text) {
  return ReadGeneralText(command_requestipodname(), IPOD_COMMAND_RETURNIPODNAME, 0, text);
}

int ipod::getipodserailnum(wchar_t* text) {
  return ReadGeneralText(command_requestipodserialnum(), IPOD_COMMAND_RETURNIPODSERIALNUM, 0, text);
}

int ipod::getipodmodelname(wchar_t* text) {
  constexpr unsigned char kModelIdBytes = 4;
  return ReadGeneralText(command_requestipodmodelnum(), IPOD_COMMAND_RETURNIPODMODELNUM,
                         kModelIdBytes, text);
}
