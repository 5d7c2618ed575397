// SPDX-License-Identifier: MIT
// The commands of each lingo by number, of both directions. These are the numbers that devices use
// on the wire, kept apart from the library's on purpose: one list of numbers in both would hide a
// wrong one.

#pragma once

#include <cstdint>

namespace ipodsim {

enum Lingo : std::uint8_t {
  kGeneral = 0x00,
  kSimpleRemote = 0x02,
  kDisplayRemote = 0x03,
  kExtended = 0x04,
  kSports = 0x09,
  kStorage = 0x0C,
};

namespace general {
enum Command : std::uint16_t {
  kIdentify = 0x01,
  kAck = 0x02,
  kRequestRemoteUiMode = 0x03,
  kEnterRemoteUiMode = 0x05,
  kExitRemoteUiMode = 0x06,
  kRequestIpodName = 0x07,
  kReturnIpodName = 0x08,
  kRequestIpodSoftwareVersion = 0x09,
  kReturnIpodSoftwareVersion = 0x0A,
  kRequestIpodSerialNum = 0x0B,
  kReturnIpodSerialNum = 0x0C,
  kRequestIpodModelNum = 0x0D,
  kReturnIpodModelNum = 0x0E,
  kRequestLingoProtocolVersion = 0x0F,
  kReturnLingoProtocolVersion = 0x10,
  kRequestMaxPayloadSize = 0x11,
  kReturnMaxPayloadSize = 0x12,
  kIdentifyDeviceLingoes = 0x13,
  kNotifyIpodStateChange = 0x23,
  kGetAccessoryInfo = 0x27,
  kRetAccessoryInfo = 0x28,
  kGetIpodPreferences = 0x29,
  kRetIpodPreferences = 0x2A,
  kSetIpodPreferences = 0x2B,
  kSetUiMode = 0x37,
  kStartIdps = 0x38,
  kSetFidTokenValues = 0x39,
  kRetFidTokenValueAcks = 0x3A,
  kEndIdps = 0x3B,
  kIdpsStatus = 0x3C,
  kSetEventNotification = 0x49,
  kIpodNotification = 0x4A,
  kGetIpodOptionsForLingo = 0x4B,
  kRetIpodOptionsForLingo = 0x4C,
  kGetEventNotification = 0x4F,
  kCancelCommand = 0x50,
  kRetEventNotification = 0x51,
};
}  // namespace general

namespace simple_remote {
enum Command : std::uint16_t {
  kContextButtonStatus = 0x00,
  kAck = 0x01,
  kImageButtonStatus = 0x02,
  kVideoButtonStatus = 0x03,
  kAudioButtonStatus = 0x04,
};
}  // namespace simple_remote

namespace display_remote {
enum Command : std::uint16_t {
  kAck = 0x00,
  kGetIndexedPlayingTrackInfo = 0x12,
  kRetIndexedPlayingTrackInfo = 0x13,
};
}  // namespace display_remote

namespace extended {
enum Command : std::uint16_t {
  kAck = 0x0001,
  kGetCurrentPlayingTrackChapterInfo = 0x0002,
  kReturnCurrentPlayingTrackChapterInfo = 0x0003,
  kGetCurrentPlayingTrackChapterName = 0x0007,
  kReturnCurrentPlayingTrackChapterName = 0x0008,
  kGetAudiobookSpeed = 0x0009,
  kReturnAudiobookSpeed = 0x000A,
  kSetAudiobookSpeed = 0x000B,
  kGetIndexedPlayingTrackInfo = 0x000C,
  kReturnIndexedPlayingTrackInfo = 0x000D,
  kGetArtworkFormats = 0x000E,
  kRetArtworkFormats = 0x000F,
  kGetTrackArtworkData = 0x0010,
  kRetTrackArtworkData = 0x0011,
  kResetDbSelection = 0x0016,
  kSelectDbRecord = 0x0017,
  kGetNumberCategorizedDbRecords = 0x0018,
  kReturnNumberCategorizedDbRecords = 0x0019,
  kRetrieveCategorizedDatabaseRecords = 0x001A,
  kReturnCategorizedDatabaseRecord = 0x001B,
  kGetPlayStatus = 0x001C,
  kReturnPlayStatus = 0x001D,
  kGetCurrentPlayingTrackIndex = 0x001E,
  /// Consoles in the field ask for the times of artwork by the number that the request has in the
  /// Display Remote lingo.
  kMisnumberedGetTrackArtworkTimes = 0x001F,
  kReturnCurrentPlayingTrackIndex = 0x001F,
  kGetIndexedPlayingTrackTitle = 0x0020,
  kReturnIndexedPlayingTrackTitle = 0x0021,
  kGetIndexedPlayingTrackArtistName = 0x0022,
  kReturnIndexedPlayingTrackArtistName = 0x0023,
  kGetIndexedPlayingTrackAlbumName = 0x0024,
  kReturnIndexedPlayingTrackAlbumName = 0x0025,
  kSetPlayStatusChangeNotification = 0x0026,
  kPlayStatusChangeNotification = 0x0027,
  kPlayCurrentSelection = 0x0028,
  kPlayControl = 0x0029,
  kGetTrackArtworkTimes = 0x002A,
  kRetTrackArtworkTimes = 0x002B,
  kGetShuffle = 0x002C,
  kReturnShuffle = 0x002D,
  kSetShuffle = 0x002E,
  kGetRepeat = 0x002F,
  kReturnRepeat = 0x0030,
  kSetRepeat = 0x0031,
  kSetDisplayImage = 0x0032,
  kGetMonoDisplayImageLimits = 0x0033,
  kReturnMonoDisplayImageLimits = 0x0034,
  kGetNumPlayingTracks = 0x0035,
  kReturnNumPlayingTracks = 0x0036,
  kSetCurrentPlayingTrack = 0x0037,
  kSelectSortDbRecord = 0x0038,
  kResetDbSelectionHierarchy = 0x003B,
  kRetrieveDbTrackInfo = 0x0040,
  kReturnDbTrackInfo = 0x0041,
};
}  // namespace extended

namespace sports {
enum Command : std::uint16_t {
  kGetDeviceVersion = 0x01,
  kRetDeviceVersion = 0x02,
  kGetDeviceCaps = 0x03,
  kRetDeviceCaps = 0x04,
  kAck = 0x80,
  kGetIpodCaps = 0x83,
  kRetIpodCaps = 0x84,
  kGetUserIndex = 0x85,
  kRetUserIndex = 0x86,
  kGetUserData = 0x88,
  kRetUserData = 0x89,
  kSetUserData = 0x8A,
};
}  // namespace sports

namespace storage {
enum Command : std::uint16_t {
  kAck = 0x00,
  kGetIpodCaps = 0x01,
  kRetIpodCaps = 0x02,
  kRetIpodFileHandle = 0x04,
  kWriteIpodFileData = 0x07,
  kCloseIpodFile = 0x08,
  kGetIpodFreeSpace = 0x10,
  kRetIpodFreeSpace = 0x11,
  kOpenIpodFeatureFile = 0x12,
  kGetAccessoryCaps = 0x81,
  kRetAccessoryCaps = 0x82,
};
}  // namespace storage

}  // namespace ipodsim
