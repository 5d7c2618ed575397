// SPDX-License-Identifier: MIT
// CIpodComm: information about the tracks of the now-playing list.
#include "ipodcomm/CIpodComm.h"
#include "protocol/commands.h"
#include "protocol/numbers.h"
#include "session/exchange.h"

using ipodcomm::Answer;
using ipodcomm::Command;
namespace display_remote = ipodcomm::display_remote;
namespace extended = ipodcomm::extended;

int CIpodComm::Command_GetIndexedPlayingTrackInfo(unsigned char type, unsigned long track,
                                                  unsigned short chapter, unsigned char* buffer,
                                                  unsigned long size) {
  unsigned char data[7] = {type};
  ipodcomm::WriteNumber32(data + 1, static_cast<std::uint32_t>(track));
  ipodcomm::WriteNumber16(data + 5, chapter);
  return Exchange(
      Command(ipodcomm::kDisplayRemoteLingo, display_remote::kGetIndexedPlayingTrackInfo, data),
      Answer(display_remote::kReturnIndexedPlayingTrackInfo, buffer, size));
}

// `command` asks for a text, which the command after it returns. It is copied as it comes: a text
// cut to `size` bytes has no terminator.
int CIpodComm::GetTrackText(std::uint16_t command, unsigned long track, unsigned char* buffer,
                            unsigned long size) {
  unsigned char data[4] = {};
  ipodcomm::WriteNumber32(data, static_cast<std::uint32_t>(track));
  const auto returned = static_cast<std::uint16_t>(command + 1);
  return Exchange(Command(ipodcomm::kExtendedLingo, command, data), Answer(returned, buffer, size));
}

int CIpodComm::Command_GetIndexedPlayingTrackTitle(unsigned long track, unsigned char* buffer,
                                                   unsigned long size) {
  return GetTrackText(extended::kGetIndexedPlayingTrackTitle, track, buffer, size);
}

int CIpodComm::Command_GetIndexedPlayingTrackArtistName(unsigned long track, unsigned char* buffer,
                                                        unsigned long size) {
  return GetTrackText(extended::kGetIndexedPlayingTrackArtistName, track, buffer, size);
}

int CIpodComm::Command_GetIndexedPlayingTrackAlbumName(unsigned long track, unsigned char* buffer,
                                                       unsigned long size) {
  return GetTrackText(extended::kGetIndexedPlayingTrackAlbumName, track, buffer, size);
}
