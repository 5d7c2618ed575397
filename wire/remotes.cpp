// SPDX-License-Identifier: MIT
// The Simple Remote lingo, 0x02: the buttons of a remote control. And the Display Remote lingo,
// 0x03: what a remote control with a display shows.
#include "wire/shared_fields.h"

namespace ipodwire {
namespace {

const std::vector<Bit> kContextButtons = {
    {0x00000001, "play/pause"},
    {0x00000002, "volume up"},
    {0x00000004, "volume down"},
    {0x00000008, "next track"},
    {0x00000010, "previous track"},
    {0x00000020, "next album"},
    {0x00000040, "previous album"},
    {0x00000080, "stop"},
    {0x00000100, "play"},
    {0x00000200, "pause"},
    {0x00000400, "mute"},
    {0x00000800, "next chapter"},
    {0x00001000, "previous chapter"},
    {0x00002000, "next playlist"},
    {0x00004000, "previous playlist"},
    {0x00008000, "shuffle"},
    {0x00010000, "repeat"},
    {0x00020000, "power on"},
    {0x00040000, "power off"},
    {0x00080000, "backlight for 30 seconds"},
    {0x00100000, "fast forward"},
    {0x00200000, "rewind"},
    {0x00400000, "menu"},
    {0x00800000, "select"},
    {0x01000000, "up"},
    {0x02000000, "down"},
    {0x04000000, "backlight off"},
};

const std::vector<Command> kSimpleRemoteCommands = {
    {0x00,
     "ContextButtonStatus",
     kAccessory,
     kNoReply,
     {LowFirstBits("buttons", kContextButtons)},
     true,
     "The buttons that are held. Bytes at the end that are 0 may be left out."},
    {0x01, "ACK", kIpod, kNoReply, AckFields(1)},
    {0x02, "ImageButtonStatus", kAccessory, kAcknowledged, {LowFirstBits("buttons", {})}},
    {0x03, "VideoButtonStatus", kAccessory, kAcknowledged, {LowFirstBits("buttons", {})}},
    {0x04, "AudioButtonStatus", kAccessory, kAcknowledged, {LowFirstBits("buttons", {})}},
};

const std::vector<Value> kDisplayTrackInformation = {
    {0, "capabilities"}, {1, "chapter"},  {2, "artist"}, {3, "album"},        {4, "genre"},
    {5, "title"},        {6, "composer"}, {7, "lyrics"}, {8, "artwork count"}};

const std::vector<Command> kDisplayRemoteCommands = {
    {0x00, "ACK", kIpod, kNoReply, AckFields(1)},
    {0x12,
     "GetIndexedPlayingTrackInfo",
     kAccessory,
     RepliedBy(0x13),
     {Named(1, "type", kDisplayTrackInformation), U32("track index"), U16("chapter index")}},
    {0x13,
     "RetIndexedPlayingTrackInfo",
     kIpod,
     kNoReply,
     {Named(1, "type", kDisplayTrackInformation),
      Choice("type",
             {
                 {0, TrackCapabilities()},
                 {1, {U32("chapter begins at", "ms"), Text("chapter")}},
                 {2, {Text("artist")}},
                 {3, {Text("album")}},
                 {4, {Text("genre")}},
                 {5, {Text("title")}},
                 {6, {Text("composer")}},
                 {7, Lyrics()},
                 {8, ArtworkCounts()},
             })}},
    {0x18, "GetTrackArtworkData", kAccessory, StreamedBy(0x19), ArtworkDataQuestion()},
    {0x19, "RetTrackArtworkData", kIpod, kNoReply, ArtworkData()},
    {0x1F, "GetTrackArtworkTimes", kAccessory, RepliedBy(0x20), ArtworkTimesQuestion()},
    {0x20, "RetTrackArtworkTimes", kIpod, kNoReply, ArtworkTimes()},
};

}  // namespace

const std::vector<Command>& SimpleRemoteCommands() { return kSimpleRemoteCommands; }
const std::vector<Command>& DisplayRemoteCommands() { return kDisplayRemoteCommands; }

}  // namespace ipodwire
