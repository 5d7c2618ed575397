// SPDX-License-Identifier: MIT
// The table of commands.

#include "command_table.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

namespace ipodsim {
namespace {

using Nature = CommandNature;

constexpr CommandRule kFromAccessory[] = {
    {kGeneral, 0x01, "Identify", 1, 1, Nature::kQuietWithout},
    {kGeneral, 0x02, "ACK", 2, 2, Nature::kQuiet},
    {kGeneral, 0x03, "RequestRemoteUIMode", 0, 0, Nature::kRequestWithout},
    {kGeneral, 0x05, "EnterRemoteUIMode", 0, 0},
    {kGeneral, 0x06, "ExitRemoteUIMode", 0, 0},
    {kGeneral, 0x07, "RequestiPodName", 0, 0},
    {kGeneral, 0x09, "RequestiPodSoftwareVersion", 0, 0},
    {kGeneral, 0x0B, "RequestiPodSerialNum", 0, 0},
    {kGeneral, 0x0D, "RequestiPodModelNum", 0, 0},
    {kGeneral, 0x0F, "RequestLingoProtocolVersion", 1, 1},
    {kGeneral, 0x11, "RequestMaxPayloadSize", 0, 0},
    {kGeneral, 0x13, "IdentifyDeviceLingoes", 12, 12, Nature::kRequestWithout},
    {kGeneral, 0x28, "RetAccessoryInfo", 1, kAnyLength, Nature::kAnswerWithout},
    {kGeneral, 0x29, "GetiPodPreferences", 1, 1},
    {kGeneral, 0x2B, "SetiPodPreferences", 3, 3},
    {kGeneral, 0x37, "SetUIMode", 1, 1},
    {kGeneral, 0x38, "StartIDPS", 0, 0},
    {kGeneral, 0x39, "SetFIDTokenValues", 1, kAnyLength},
    {kGeneral, 0x3B, "EndIDPS", 1, 1},
    {kGeneral, 0x49, "SetEventNotification", 8, 8},
    {kGeneral, 0x4B, "GetiPodOptionsForLingo", 1, 1},
    {kGeneral, 0x4F, "GetEventNotification", 0, 0},
    {kGeneral, 0x50, "CancelCommand", 0, 0},
    {kSimpleRemote, 0x00, "ContextButtonStatus", 1, 4, Nature::kQuiet},
    {kSimpleRemote, 0x02, "ImageButtonStatus", 1, 4},
    {kSimpleRemote, 0x03, "VideoButtonStatus", 1, 4},
    {kSimpleRemote, 0x04, "AudioButtonStatus", 1, 4},
    {kDisplayRemote, 0x12, "GetIndexedPlayingTrackInfo", 7, 7},
    {kExtended, 0x0002, "GetCurrentPlayingTrackChapterInfo", 0, 0},
    {kExtended, 0x0007, "GetCurrentPlayingTrackChapterName", 0, 4},
    {kExtended, 0x0009, "GetAudiobookSpeed", 0, 0},
    {kExtended, 0x000B, "SetAudiobookSpeed", 1, 2},
    {kExtended, 0x000C, "GetIndexedPlayingTrackInfo", 7, 7},
    {kExtended, 0x000E, "GetArtworkFormats", 0, 0},
    {kExtended, 0x0010, "GetTrackArtworkData", 10, 10},
    {kExtended, 0x0016, "ResetDBSelection", 0, 0},
    {kExtended, 0x0017, "SelectDBRecord", 5, 5},
    {kExtended, 0x0018, "GetNumberCategorizedDBRecords", 1, 1},
    {kExtended, 0x001A, "RetrieveCategorizedDatabaseRecords", 9, 9},
    {kExtended, 0x001C, "GetPlayStatus", 0, 0},
    {kExtended, 0x001E, "GetCurrentPlayingTrackIndex", 0, 0},
    {kExtended, 0x001F, "GetTrackArtworkTimes", 10, 10},  // by the Display Remote's number
    {kExtended, 0x0020, "GetIndexedPlayingTrackTitle", 4, 4},
    {kExtended, 0x0022, "GetIndexedPlayingTrackArtistName", 4, 4},
    {kExtended, 0x0024, "GetIndexedPlayingTrackAlbumName", 4, 4},
    {kExtended, 0x0026, "SetPlayStatusChangeNotification", 1, 4},
    {kExtended, 0x0028, "PlayCurrentSelection", 4, 4},
    {kExtended, 0x0029, "PlayControl", 1, 1},
    {kExtended, 0x002A, "GetTrackArtworkTimes", 10, 10},
    {kExtended, 0x002C, "GetShuffle", 0, 0},
    {kExtended, 0x002E, "SetShuffle", 1, 2},
    {kExtended, 0x002F, "GetRepeat", 0, 0},
    {kExtended, 0x0031, "SetRepeat", 1, 2},
    {kExtended, 0x0032, "SetDisplayImage", 2, kAnyLength},
    {kExtended, 0x0033, "GetMonoDisplayImageLimits", 0, 0},
    {kExtended, 0x0035, "GetNumPlayingTracks", 0, 0},
    {kExtended, 0x0037, "SetCurrentPlayingTrack", 4, 4},
    {kExtended, 0x0038, "SelectSortDBRecord", 6, 6},
    {kExtended, 0x003B, "ResetDBSelectionHierarchy", 1, 1},
    {kExtended, 0x0040, "RetrieveDBTrackInfo", 9, 9},
    {kSports, 0x02, "RetDeviceVersion", 2, 2, Nature::kAnswer},
    {kSports, 0x04, "RetDeviceCaps", 3, 3, Nature::kAnswerEchoing},
    {kSports, 0x83, "GetiPodCaps", 0, 0},
    {kSports, 0x85, "GetUserIndex", 0, 0},
    {kSports, 0x88, "GetUserData", 1, 1},
    {kSports, 0x8A, "SetUserData", 2, 3},
    {kStorage, 0x01, "GetiPodCaps", 0, 0},
    {kStorage, 0x07, "WriteiPodFileData", 5, kAnyLength},
    {kStorage, 0x08, "CloseiPodFile", 1, 1},
    {kStorage, 0x10, "GetiPodFreeSpace", 0, 0},
    {kStorage, 0x12, "OpeniPodFeatureFile", 5, kAnyLength},
    {kStorage, 0x82, "RetAccessoryCaps", 22, 22, Nature::kAnswerEchoing},
};

struct NamedCommand {
  std::uint8_t lingo;
  std::uint16_t command;
  const char* name;
};

constexpr NamedCommand kFromIpod[] = {
    {kGeneral, 0x08, "ReturniPodName"},
    {kGeneral, 0x0A, "ReturniPodSoftwareVersion"},
    {kGeneral, 0x0C, "ReturniPodSerialNum"},
    {kGeneral, 0x0E, "ReturniPodModelNum"},
    {kGeneral, 0x10, "ReturnLingoProtocolVersion"},
    {kGeneral, 0x12, "ReturnMaxPayloadSize"},
    {kGeneral, 0x23, "NotifyiPodStateChange"},
    {kGeneral, 0x27, "GetAccessoryInfo"},
    {kGeneral, 0x2A, "RetiPodPreferences"},
    {kGeneral, 0x3A, "RetFIDTokenValueACKs"},
    {kGeneral, 0x3C, "IDPSStatus"},
    {kGeneral, 0x4A, "iPodNotification"},
    {kGeneral, 0x4C, "RetiPodOptionsForLingo"},
    {kGeneral, 0x51, "RetEventNotification"},
    {kSimpleRemote, 0x01, "ACK"},
    {kDisplayRemote, 0x00, "ACK"},
    {kDisplayRemote, 0x13, "RetIndexedPlayingTrackInfo"},
    {kExtended, 0x0001, "ACK"},
    {kExtended, 0x0003, "ReturnCurrentPlayingTrackChapterInfo"},
    {kExtended, 0x0008, "ReturnCurrentPlayingTrackChapterName"},
    {kExtended, 0x000A, "ReturnAudiobookSpeed"},
    {kExtended, 0x000D, "ReturnIndexedPlayingTrackInfo"},
    {kExtended, 0x000F, "RetArtworkFormats"},
    {kExtended, 0x0011, "RetTrackArtworkData"},
    {kExtended, 0x0019, "ReturnNumberCategorizedDBRecords"},
    {kExtended, 0x001B, "ReturnCategorizedDatabaseRecord"},
    {kExtended, 0x001D, "ReturnPlayStatus"},
    {kExtended, 0x001F, "ReturnCurrentPlayingTrackIndex"},
    {kExtended, 0x0021, "ReturnIndexedPlayingTrackTitle"},
    {kExtended, 0x0023, "ReturnIndexedPlayingTrackArtistName"},
    {kExtended, 0x0025, "ReturnIndexedPlayingTrackAlbumName"},
    {kExtended, 0x0027, "PlayStatusChangeNotification"},
    {kExtended, 0x002B, "RetTrackArtworkTimes"},
    {kExtended, 0x002D, "ReturnShuffle"},
    {kExtended, 0x0030, "ReturnRepeat"},
    {kExtended, 0x0034, "ReturnMonoDisplayImageLimits"},
    {kExtended, 0x0036, "ReturnNumPlayingTracks"},
    {kExtended, 0x0041, "ReturnDBTrackInfo"},
    {kSports, 0x01, "GetDeviceVersion"},
    {kSports, 0x03, "GetDeviceCaps"},
    {kSports, 0x80, "iPodACK"},
    {kStorage, 0x00, "ACK"},
    {kStorage, 0x81, "GetAccessoryCaps"},
};

template <typename Table>
auto Find(const Table& table, std::uint8_t lingo, std::uint16_t command) {
  const auto found = std::find_if(std::begin(table), std::end(table), [&](const auto& row) {
    return row.lingo == lingo && row.command == command;
  });
  return found == std::end(table) ? nullptr : &*found;
}

std::string Hex(unsigned value, int digits) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%0*X", digits, value);
  return text.data();
}

}  // namespace

const CommandRule* FindCommand(std::uint8_t lingo, std::uint16_t command) {
  return Find(kFromAccessory, lingo, command);
}

const char* LingoName(std::uint8_t lingo) {
  switch (lingo) {
    case kGeneral:
      return "General";
    case kSimpleRemote:
      return "Simple Remote";
    case kDisplayRemote:
      return "Display Remote";
    case kExtended:
      return "Extended Interface";
    case kSports:
      return "Sports";
    case kStorage:
      return "Storage";
    default:
      return "unknown lingo";
  }
}

std::string CommandName(std::uint8_t lingo, std::uint16_t command, Sender sender) {
  const CommandRule* rule = FindCommand(lingo, command);
  const NamedCommand* named = Find(kFromIpod, lingo, command);
  if (rule != nullptr && (named == nullptr || sender == Sender::kAccessory)) return rule->name;
  if (named != nullptr) return named->name;
  return "command " + Hex(command, lingo == kExtended ? 4 : 2);
}

std::uint16_t AckCommand(std::uint8_t lingo) {
  switch (lingo) {
    case kGeneral:
      return 0x02;
    case kSimpleRemote:
      return 0x01;
    case kDisplayRemote:
      return 0x00;
    case kExtended:
      return 0x0001;
    case kSports:
      return 0x80;
    case kStorage:
      return 0x00;
    default:
      return 0xFFFF;
  }
}

}  // namespace ipodsim
