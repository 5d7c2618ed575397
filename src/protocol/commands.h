// SPDX-License-Identifier: MIT
// Lingoes and commands as the current interface sends and receives them.
//
// Two commands do not go over the wire as hosts know them: the exported constants give SetRepeat
// and the Sports SetUserData another number (IPOD_COMMAND_SETREPEAT,
// IPOD_COMMAND_SPORTS_SETUSERDATA).
#pragma once

#include <cstdint>

namespace ipodcomm {

constexpr std::uint8_t kGeneralLingo = 0x00;
constexpr std::uint8_t kSimpleRemoteLingo = 0x02;
constexpr std::uint8_t kDisplayRemoteLingo = 0x03;
constexpr std::uint8_t kExtendedLingo = 0x04;
constexpr std::uint8_t kSportsLingo = 0x09;
constexpr std::uint8_t kStorageLingo = 0x0C;

namespace general {
constexpr std::uint16_t kAck = 0x02;
constexpr std::uint16_t kRequestRemoteUiMode = 0x03;
constexpr std::uint16_t kEnterRemoteUiMode = 0x05;
constexpr std::uint16_t kRequestIpodName = 0x07;
constexpr std::uint16_t kReturnIpodName = 0x08;
constexpr std::uint16_t kRequestIpodModelNumber = 0x0D;
constexpr std::uint16_t kReturnIpodModelNumber = 0x0E;
constexpr std::uint16_t kRequestLingoProtocolVersion = 0x0F;
constexpr std::uint16_t kReturnLingoProtocolVersion = 0x10;
constexpr std::uint16_t kRequestMaxPayloadSize = 0x11;
constexpr std::uint16_t kReturnMaxPayloadSize = 0x12;
constexpr std::uint16_t kIdentifyDeviceLingoes = 0x13;
constexpr std::uint16_t kNotifyIpodStateChange = 0x23;
constexpr std::uint16_t kGetAccessoryInfo = 0x27;
constexpr std::uint16_t kRetAccessoryInfo = 0x28;
constexpr std::uint16_t kGetIpodPreferences = 0x29;
constexpr std::uint16_t kRetIpodPreferences = 0x2A;
constexpr std::uint16_t kSetIpodPreferences = 0x2B;
constexpr std::uint16_t kSetUiMode = 0x37;
constexpr std::uint16_t kStartIdps = 0x38;
constexpr std::uint16_t kSetFidTokenValues = 0x39;
constexpr std::uint16_t kRetFidTokenValueAcks = 0x3A;
constexpr std::uint16_t kEndIdps = 0x3B;
constexpr std::uint16_t kIdpsStatus = 0x3C;
constexpr std::uint16_t kSetEventNotification = 0x49;
constexpr std::uint16_t kIpodNotification = 0x4A;
constexpr std::uint16_t kGetIpodOptionsForLingo = 0x4B;
constexpr std::uint16_t kRetIpodOptionsForLingo = 0x4C;
constexpr std::uint16_t kGetSupportedEventNotification = 0x4F;
constexpr std::uint16_t kCancelCommand = 0x50;
constexpr std::uint16_t kRetSupportedEventNotification = 0x51;
}  // namespace general

namespace simple_remote {
constexpr std::uint16_t kContextButtonStatus = 0x00;
}  // namespace simple_remote

namespace display_remote {
constexpr std::uint16_t kAck = 0x00;
constexpr std::uint16_t kGetIndexedPlayingTrackInfo = 0x12;
constexpr std::uint16_t kReturnIndexedPlayingTrackInfo = 0x13;
}  // namespace display_remote

namespace extended {
constexpr std::uint16_t kAck = 0x0001;
constexpr std::uint16_t kResetDbSelection = 0x0016;
constexpr std::uint16_t kSelectDbRecord = 0x0017;
constexpr std::uint16_t kGetNumberCategorizedDbRecords = 0x0018;
constexpr std::uint16_t kReturnNumberCategorizedDbRecords = 0x0019;
constexpr std::uint16_t kRetrieveCategorizedDatabaseRecords = 0x001A;
constexpr std::uint16_t kReturnCategorizedDatabaseRecord = 0x001B;
constexpr std::uint16_t kGetPlayStatus = 0x001C;
constexpr std::uint16_t kReturnPlayStatus = 0x001D;
constexpr std::uint16_t kGetCurrentPlayingTrackIndex = 0x001E;
constexpr std::uint16_t kReturnCurrentPlayingTrackIndex = 0x001F;
constexpr std::uint16_t kGetIndexedPlayingTrackTitle = 0x0020;
constexpr std::uint16_t kReturnIndexedPlayingTrackTitle = 0x0021;
constexpr std::uint16_t kGetIndexedPlayingTrackArtistName = 0x0022;
constexpr std::uint16_t kReturnIndexedPlayingTrackArtistName = 0x0023;
constexpr std::uint16_t kGetIndexedPlayingTrackAlbumName = 0x0024;
constexpr std::uint16_t kReturnIndexedPlayingTrackAlbumName = 0x0025;
constexpr std::uint16_t kSetPlayStatusChangeNotification = 0x0026;
constexpr std::uint16_t kPlayStatusChangeNotification = 0x0027;
constexpr std::uint16_t kPlayControl = 0x0029;
constexpr std::uint16_t kGetShuffle = 0x002C;
constexpr std::uint16_t kReturnShuffle = 0x002D;
constexpr std::uint16_t kSetShuffle = 0x002E;
constexpr std::uint16_t kSetRepeat = 0x0031;  // exported as 0x2F, which is GetRepeat
constexpr std::uint16_t kSelectSortDbRecord = 0x0038;
constexpr std::uint16_t kResetDbSelectionHierarchy = 0x003B;
constexpr std::uint16_t kRetrieveDbTrackInfo = 0x0040;
constexpr std::uint16_t kReturnDbTrackInfo = 0x0041;
}  // namespace extended

// Below 0x80 the iPod asks and the accessory answers, from 0x80 on the other way round.
namespace sports {
constexpr std::uint16_t kGetDeviceVersion = 0x01;
constexpr std::uint16_t kRetDeviceVersion = 0x02;
constexpr std::uint16_t kGetDeviceCaps = 0x03;
constexpr std::uint16_t kRetDeviceCaps = 0x04;
constexpr std::uint16_t kAck = 0x80;
constexpr std::uint16_t kGetIpodCaps = 0x83;
constexpr std::uint16_t kRetIpodCaps = 0x84;
constexpr std::uint16_t kGetUserData = 0x88;
constexpr std::uint16_t kRetUserData = 0x89;
constexpr std::uint16_t kSetUserData = 0x8A;  // exported as 0x90
}  // namespace sports

// Here it is the reverse: from 0x80 on the iPod asks.
namespace storage {
constexpr std::uint16_t kAck = 0x00;
constexpr std::uint16_t kGetIpodCaps = 0x01;
constexpr std::uint16_t kRetIpodCaps = 0x02;
constexpr std::uint16_t kRetIpodFileHandle = 0x04;
constexpr std::uint16_t kWriteIpodFileData = 0x07;
constexpr std::uint16_t kCloseIpodFile = 0x08;
constexpr std::uint16_t kGetIpodFreeSpace = 0x10;
constexpr std::uint16_t kRetIpodFreeSpace = 0x11;
constexpr std::uint16_t kOpenIpodFeatureFile = 0x12;
constexpr std::uint16_t kGetAccessoryCaps = 0x81;
constexpr std::uint16_t kRetAccessoryCaps = 0x82;
}  // namespace storage

}  // namespace ipodcomm
