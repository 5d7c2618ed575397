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
    {kGeneral, general::kIdentify, "Identify", 1, 1, Nature::kQuietWithout},
    {kGeneral, general::kAck, "ACK", 2, 2, Nature::kQuiet},
    {kGeneral, general::kRequestRemoteUiMode, "RequestRemoteUIMode", 0, 0, Nature::kRequestWithout},
    {kGeneral, general::kEnterRemoteUiMode, "EnterRemoteUIMode", 0, 0},
    {kGeneral, general::kExitRemoteUiMode, "ExitRemoteUIMode", 0, 0},
    {kGeneral, general::kRequestIpodName, "RequestiPodName", 0, 0},
    {kGeneral, general::kRequestIpodSoftwareVersion, "RequestiPodSoftwareVersion", 0, 0},
    {kGeneral, general::kRequestIpodSerialNum, "RequestiPodSerialNum", 0, 0},
    {kGeneral, general::kRequestIpodModelNum, "RequestiPodModelNum", 0, 0},
    {kGeneral, general::kRequestLingoProtocolVersion, "RequestLingoProtocolVersion", 1, 1},
    {kGeneral, general::kRequestMaxPayloadSize, "RequestMaxPayloadSize", 0, 0},
    {kGeneral, general::kIdentifyDeviceLingoes, "IdentifyDeviceLingoes", 12, 12,
     Nature::kRequestWithout},
    {kGeneral, general::kRetAccessoryInfo, "RetAccessoryInfo", 1, kAnyLength,
     Nature::kAnswerWithout},
    {kGeneral, general::kGetIpodPreferences, "GetiPodPreferences", 1, 1},
    {kGeneral, general::kSetIpodPreferences, "SetiPodPreferences", 3, 3},
    {kGeneral, general::kSetUiMode, "SetUIMode", 1, 1},
    {kGeneral, general::kStartIdps, "StartIDPS", 0, 0},
    {kGeneral, general::kSetFidTokenValues, "SetFIDTokenValues", 1, kAnyLength},
    {kGeneral, general::kEndIdps, "EndIDPS", 1, 1},
    {kGeneral, general::kSetEventNotification, "SetEventNotification", 8, 8},
    {kGeneral, general::kGetIpodOptionsForLingo, "GetiPodOptionsForLingo", 1, 1},
    {kGeneral, general::kGetEventNotification, "GetEventNotification", 0, 0},
    {kGeneral, general::kCancelCommand, "CancelCommand", 0, 0},
    {kSimpleRemote, simple_remote::kContextButtonStatus, "ContextButtonStatus", 1, 4,
     Nature::kQuiet},
    {kSimpleRemote, simple_remote::kImageButtonStatus, "ImageButtonStatus", 1, 4},
    {kSimpleRemote, simple_remote::kVideoButtonStatus, "VideoButtonStatus", 1, 4},
    {kSimpleRemote, simple_remote::kAudioButtonStatus, "AudioButtonStatus", 1, 4},
    {kDisplayRemote, display_remote::kGetIndexedPlayingTrackInfo, "GetIndexedPlayingTrackInfo", 7,
     7},
    {kExtended, extended::kGetCurrentPlayingTrackChapterInfo, "GetCurrentPlayingTrackChapterInfo",
     0, 0},
    {kExtended, extended::kGetCurrentPlayingTrackChapterName, "GetCurrentPlayingTrackChapterName",
     0, 4},
    {kExtended, extended::kGetAudiobookSpeed, "GetAudiobookSpeed", 0, 0},
    {kExtended, extended::kSetAudiobookSpeed, "SetAudiobookSpeed", 1, 2},
    {kExtended, extended::kGetIndexedPlayingTrackInfo, "GetIndexedPlayingTrackInfo", 7, 7},
    {kExtended, extended::kGetArtworkFormats, "GetArtworkFormats", 0, 0},
    {kExtended, extended::kGetTrackArtworkData, "GetTrackArtworkData", 10, 10},
    {kExtended, extended::kResetDbSelection, "ResetDBSelection", 0, 0},
    {kExtended, extended::kSelectDbRecord, "SelectDBRecord", 5, 5},
    {kExtended, extended::kGetNumberCategorizedDbRecords, "GetNumberCategorizedDBRecords", 1, 1},
    {kExtended, extended::kRetrieveCategorizedDatabaseRecords, "RetrieveCategorizedDatabaseRecords",
     9, 9},
    {kExtended, extended::kGetPlayStatus, "GetPlayStatus", 0, 0},
    {kExtended, extended::kGetCurrentPlayingTrackIndex, "GetCurrentPlayingTrackIndex", 0, 0},
    {kExtended, extended::kMisnumberedGetTrackArtworkTimes, "GetTrackArtworkTimes", 10, 10},
    {kExtended, extended::kGetIndexedPlayingTrackTitle, "GetIndexedPlayingTrackTitle", 4, 4},
    {kExtended, extended::kGetIndexedPlayingTrackArtistName, "GetIndexedPlayingTrackArtistName", 4,
     4},
    {kExtended, extended::kGetIndexedPlayingTrackAlbumName, "GetIndexedPlayingTrackAlbumName", 4,
     4},
    {kExtended, extended::kSetPlayStatusChangeNotification, "SetPlayStatusChangeNotification", 1,
     4},
    {kExtended, extended::kPlayCurrentSelection, "PlayCurrentSelection", 4, 4},
    {kExtended, extended::kPlayControl, "PlayControl", 1, 1},
    {kExtended, extended::kGetTrackArtworkTimes, "GetTrackArtworkTimes", 10, 10},
    {kExtended, extended::kGetShuffle, "GetShuffle", 0, 0},
    {kExtended, extended::kSetShuffle, "SetShuffle", 1, 2},
    {kExtended, extended::kGetRepeat, "GetRepeat", 0, 0},
    {kExtended, extended::kSetRepeat, "SetRepeat", 1, 2},
    {kExtended, extended::kSetDisplayImage, "SetDisplayImage", 2, kAnyLength},
    {kExtended, extended::kGetMonoDisplayImageLimits, "GetMonoDisplayImageLimits", 0, 0},
    {kExtended, extended::kGetNumPlayingTracks, "GetNumPlayingTracks", 0, 0},
    {kExtended, extended::kSetCurrentPlayingTrack, "SetCurrentPlayingTrack", 4, 4},
    {kExtended, extended::kSelectSortDbRecord, "SelectSortDBRecord", 6, 6},
    {kExtended, extended::kResetDbSelectionHierarchy, "ResetDBSelectionHierarchy", 1, 1},
    {kExtended, extended::kRetrieveDbTrackInfo, "RetrieveDBTrackInfo", 9, 9},
    {kSports, sports::kRetDeviceVersion, "RetDeviceVersion", 2, 2, Nature::kAnswer},
    {kSports, sports::kRetDeviceCaps, "RetDeviceCaps", 3, 3, Nature::kAnswerEchoing},
    {kSports, sports::kGetIpodCaps, "GetiPodCaps", 0, 0},
    {kSports, sports::kGetUserIndex, "GetUserIndex", 0, 0},
    {kSports, sports::kGetUserData, "GetUserData", 1, 1},
    {kSports, sports::kSetUserData, "SetUserData", 2, 3},
    {kStorage, storage::kGetIpodCaps, "GetiPodCaps", 0, 0},
    {kStorage, storage::kWriteIpodFileData, "WriteiPodFileData", 5, kAnyLength},
    {kStorage, storage::kCloseIpodFile, "CloseiPodFile", 1, 1},
    {kStorage, storage::kGetIpodFreeSpace, "GetiPodFreeSpace", 0, 0},
    {kStorage, storage::kOpenIpodFeatureFile, "OpeniPodFeatureFile", 5, kAnyLength},
    {kStorage, storage::kRetAccessoryCaps, "RetAccessoryCaps", 22, 22, Nature::kAnswerEchoing},
};

struct NamedCommand {
  std::uint8_t lingo;
  std::uint16_t command;
  const char* name;
};

constexpr NamedCommand kFromIpod[] = {
    {kGeneral, general::kReturnIpodName, "ReturniPodName"},
    {kGeneral, general::kReturnIpodSoftwareVersion, "ReturniPodSoftwareVersion"},
    {kGeneral, general::kReturnIpodSerialNum, "ReturniPodSerialNum"},
    {kGeneral, general::kReturnIpodModelNum, "ReturniPodModelNum"},
    {kGeneral, general::kReturnLingoProtocolVersion, "ReturnLingoProtocolVersion"},
    {kGeneral, general::kReturnMaxPayloadSize, "ReturnMaxPayloadSize"},
    {kGeneral, general::kNotifyIpodStateChange, "NotifyiPodStateChange"},
    {kGeneral, general::kGetAccessoryInfo, "GetAccessoryInfo"},
    {kGeneral, general::kRetIpodPreferences, "RetiPodPreferences"},
    {kGeneral, general::kRetFidTokenValueAcks, "RetFIDTokenValueACKs"},
    {kGeneral, general::kIdpsStatus, "IDPSStatus"},
    {kGeneral, general::kIpodNotification, "iPodNotification"},
    {kGeneral, general::kRetIpodOptionsForLingo, "RetiPodOptionsForLingo"},
    {kGeneral, general::kRetEventNotification, "RetEventNotification"},
    {kSimpleRemote, simple_remote::kAck, "ACK"},
    {kDisplayRemote, display_remote::kAck, "ACK"},
    {kDisplayRemote, display_remote::kRetIndexedPlayingTrackInfo, "RetIndexedPlayingTrackInfo"},
    {kExtended, extended::kAck, "ACK"},
    {kExtended, extended::kReturnCurrentPlayingTrackChapterInfo,
     "ReturnCurrentPlayingTrackChapterInfo"},
    {kExtended, extended::kReturnCurrentPlayingTrackChapterName,
     "ReturnCurrentPlayingTrackChapterName"},
    {kExtended, extended::kReturnAudiobookSpeed, "ReturnAudiobookSpeed"},
    {kExtended, extended::kReturnIndexedPlayingTrackInfo, "ReturnIndexedPlayingTrackInfo"},
    {kExtended, extended::kRetArtworkFormats, "RetArtworkFormats"},
    {kExtended, extended::kRetTrackArtworkData, "RetTrackArtworkData"},
    {kExtended, extended::kReturnNumberCategorizedDbRecords, "ReturnNumberCategorizedDBRecords"},
    {kExtended, extended::kReturnCategorizedDatabaseRecord, "ReturnCategorizedDatabaseRecord"},
    {kExtended, extended::kReturnPlayStatus, "ReturnPlayStatus"},
    {kExtended, extended::kReturnCurrentPlayingTrackIndex, "ReturnCurrentPlayingTrackIndex"},
    {kExtended, extended::kReturnIndexedPlayingTrackTitle, "ReturnIndexedPlayingTrackTitle"},
    {kExtended, extended::kReturnIndexedPlayingTrackArtistName,
     "ReturnIndexedPlayingTrackArtistName"},
    {kExtended, extended::kReturnIndexedPlayingTrackAlbumName,
     "ReturnIndexedPlayingTrackAlbumName"},
    {kExtended, extended::kPlayStatusChangeNotification, "PlayStatusChangeNotification"},
    {kExtended, extended::kRetTrackArtworkTimes, "RetTrackArtworkTimes"},
    {kExtended, extended::kReturnShuffle, "ReturnShuffle"},
    {kExtended, extended::kReturnRepeat, "ReturnRepeat"},
    {kExtended, extended::kReturnMonoDisplayImageLimits, "ReturnMonoDisplayImageLimits"},
    {kExtended, extended::kReturnNumPlayingTracks, "ReturnNumPlayingTracks"},
    {kExtended, extended::kReturnDbTrackInfo, "ReturnDBTrackInfo"},
    {kSports, sports::kGetDeviceVersion, "GetDeviceVersion"},
    {kSports, sports::kGetDeviceCaps, "GetDeviceCaps"},
    {kSports, sports::kAck, "iPodACK"},
    {kSports, sports::kRetIpodCaps, "RetiPodCaps"},
    {kSports, sports::kRetUserIndex, "RetUserIndex"},
    {kSports, sports::kRetUserData, "RetUserData"},
    {kStorage, storage::kAck, "ACK"},
    {kStorage, storage::kRetIpodCaps, "RetiPodCaps"},
    {kStorage, storage::kRetIpodFileHandle, "RetiPodFileHandle"},
    {kStorage, storage::kRetIpodFreeSpace, "RetiPodFreeSpace"},
    {kStorage, storage::kGetAccessoryCaps, "GetAccessoryCaps"},
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
      return general::kAck;
    case kSimpleRemote:
      return simple_remote::kAck;
    case kDisplayRemote:
      return display_remote::kAck;
    case kExtended:
      return extended::kAck;
    case kSports:
      return sports::kAck;
    case kStorage:
      return storage::kAck;
    default:
      return kNoAck;
  }
}

}  // namespace ipodsim
