// SPDX-License-Identifier: MIT
// The Extended Interface lingo, 0x04: the iPod's library and its player. Its commands have numbers
// of two bytes.
#include "wire/shared_fields.h"

namespace ipodwire {
namespace {

constexpr Sender kAccessory = Sender::kAccessory;
constexpr Sender kIpod = Sender::kIpod;

const std::vector<Value> kCategories = {
    {0, "top"},   {1, "playlist"}, {2, "artist"},    {3, "album"},   {4, "genre"},
    {5, "track"}, {6, "composer"}, {7, "audiobook"}, {8, "podcast"}, {9, "nested playlist"}};

const std::vector<Value> kSortOrders = {{0, "genre"},        {1, "artist"},    {2, "composer"},
                                        {3, "album"},        {4, "name"},      {5, "playlist"},
                                        {6, "release date"}, {7, "series"},    {8, "season"},
                                        {9, "episode"},      {0xFF, "default"}};

const std::vector<Value> kPlayerStates = {{0, "stopped"},     {1, "playing"},
                                          {2, "paused"},      {3, "fast forward"},
                                          {4, "fast rewind"}, {5, "ending fast forward or rewind"}};

const std::vector<Value> kPlayControls = {{1, "play/pause"},
                                          {2, "stop"},
                                          {3, "next track"},
                                          {4, "previous track"},
                                          {5, "begin fast forward"},
                                          {6, "begin rewind"},
                                          {7, "end fast forward or rewind"},
                                          {8, "next"},
                                          {9, "previous"},
                                          {10, "play"},
                                          {11, "pause"}};

const std::vector<Value> kShuffleModes = {{0, "off"}, {1, "tracks"}, {2, "albums"}};
const std::vector<Value> kRepeatModes = {{0, "off"}, {1, "one"}, {2, "all"}};
const std::vector<Value> kAudiobookSpeeds = {{0xFF, "slow"}, {0, "normal"}, {1, "fast"}};

const std::vector<Value> kExtendedTrackInformation = {
    {0, "capabilities"}, {1, "podcast"}, {2, "release date"}, {3, "description"},
    {4, "lyrics"},       {5, "genre"},   {6, "composer"},     {7, "artwork count"}};

const std::vector<Bit> kNotifications = {{0x01, "stopped"},
                                         {0x02, "status"},
                                         {0x04, "track index"},
                                         {0x08, "position in milliseconds"},
                                         {0x10, "position in seconds"}};

std::vector<Field> NotificationFields() {
  return {
      Named(1, "change",
            {{0x00, "stopped"},
             {0x01, "track"},
             {0x04, "position"},
             {0x06, "status"},
             {0x07, "position"}}),
      Choice("change", {{0x00, {}},
                        {0x01, {U32("track index")}},
                        {0x04, {U32("position", "ms")}},
                        {0x06,
                         {Named(1, "status",
                                {{0x02, "stopped"},
                                 {0x05, "fast forward"},
                                 {0x06, "rewind"},
                                 {0x07, "fast forward or rewind ended"},
                                 {0x0A, "playing"},
                                 {0x0B, "paused"}})}},
                        {0x07, {U32("position", "s")}}}),
  };
}

std::vector<Field> TrackInformationFields() {
  return {
      Named(1, "type", kExtendedTrackInformation),
      Choice("type",
             {
                 {0, TrackCapabilities()},
                 {1, {Text("podcast")}},
                 {2,
                  {U8("second"), U8("minute"), U8("hour"), U8("day"), U8("month"), U16("year"),
                   Named(1, "weekday",
                         {{0, "Sunday"},
                          {1, "Monday"},
                          {2, "Tuesday"},
                          {3, "Wednesday"},
                          {4, "Thursday"},
                          {5, "Friday"},
                          {6, "Saturday"}})}},
                 {3, {Text("description")}},
                 {4, Lyrics()},
                 {5, {Text("genre")}},
                 {6, {Text("composer")}},
                 {7, ArtworkCounts()},
             }),
  };
}

std::vector<Field> DisplayImageFields() {
  return {
      U16("part"),
      Choice("part",
             {{0,
               {Named(1, "pixel format", PixelFormats()), U16("width", "pixels"),
                U16("height", "pixels"), U32("row size", "bytes"), Optional(Bytes("pixels"))}}},
             {Optional(Bytes("pixels"))}),
  };
}

std::vector<Field> ImageLimitFields() {
  return {U16("width", "pixels"), U16("height", "pixels"),
          Named(1, "pixel format", PixelFormats())};
}

const std::vector<Command> kExtendedCommands = {
    {0x0001, "ACK", kIpod, kNoReply, AckFields(2)},
    {0x0002, "GetCurrentPlayingTrackChapterInfo", kAccessory, RepliedBy(0x0003), {}},
    {0x0003,
     "ReturnCurrentPlayingTrackChapterInfo",
     kIpod,
     kNoReply,
     {Named(4, "chapter index", {{0xFFFFFFFF, "none"}}), U32("chapter count")}},
    {0x0004, "SetCurrentPlayingTrackChapter", kAccessory, kAcknowledged, {U32("chapter index")}},
    {0x0005,
     "GetCurrentPlayingTrackChapterPlayStatus",
     kAccessory,
     RepliedBy(0x0006),
     {U32("chapter index")}},
    {0x0006,
     "ReturnCurrentPlayingTrackChapterPlayStatus",
     kIpod,
     kNoReply,
     {U32("chapter length", "ms"), U32("position", "ms")}},
    {0x0007,
     "GetCurrentPlayingTrackChapterName",
     kAccessory,
     RepliedBy(0x0008),
     {Optional(U32("chapter index"))},
     true,
     "Older consoles leave the index out and mean the current chapter."},
    {0x0008, "ReturnCurrentPlayingTrackChapterName", kIpod, kNoReply, {Text("chapter")}},
    {0x0009, "GetAudiobookSpeed", kAccessory, RepliedBy(0x000A), {}},
    {0x000A, "ReturnAudiobookSpeed", kIpod, kNoReply, {Named(1, "speed", kAudiobookSpeeds)}},
    {0x000B,
     "SetAudiobookSpeed",
     kAccessory,
     kAcknowledged,
     {Named(1, "speed", kAudiobookSpeeds), Optional(Named(1, "restore on exit", YesOrNo()))}},
    {0x000C,
     "GetIndexedPlayingTrackInfo",
     kAccessory,
     RepliedBy(0x000D),
     {Named(1, "type", kExtendedTrackInformation), U32("track index"), U16("chapter index")}},
    {0x000D, "ReturnIndexedPlayingTrackInfo", kIpod, kNoReply, TrackInformationFields()},
    {0x000E, "GetArtworkFormats", kAccessory, RepliedBy(0x000F), {}},
    {0x000F,
     "RetArtworkFormats",
     kIpod,
     kNoReply,
     {Repeated("formats", {U16("format ID"), Named(1, "pixel format", PixelFormats()),
                           U16("width", "pixels"), U16("height", "pixels")})}},
    {0x0010, "GetTrackArtworkData", kAccessory, StreamedBy(0x0011), ArtworkDataQuestion()},
    {0x0011, "RetTrackArtworkData", kIpod, kNoReply, ArtworkData()},
    {0x0016, "ResetDBSelection", kAccessory, kAcknowledged, {}},
    {0x0017,
     "SelectDBRecord",
     kAccessory,
     kAcknowledged,
     {Named(1, "category", kCategories), U32("record index")}},
    {0x0018,
     "GetNumberCategorizedDBRecords",
     kAccessory,
     RepliedBy(0x0019),
     {Named(1, "category", kCategories)}},
    {0x0019, "ReturnNumberCategorizedDBRecords", kIpod, kNoReply, {U32("record count")}},
    {0x001A,
     "RetrieveCategorizedDatabaseRecords",
     kAccessory,
     StreamedBy(0x001B),
     {Named(1, "category", kCategories), U32("first record"), U32("record count")}},
    {0x001B,
     "ReturnCategorizedDatabaseRecord",
     kIpod,
     kNoReply,
     {U32("record index"), Text("record")}},
    {0x001C, "GetPlayStatus", kAccessory, RepliedBy(0x001D), {}},
    {0x001D,
     "ReturnPlayStatus",
     kIpod,
     kNoReply,
     {U32("track length", "ms"), U32("position", "ms"), Named(1, "state", kPlayerStates)}},
    {0x001E, "GetCurrentPlayingTrackIndex", kAccessory, RepliedBy(0x001F), {}},
    {0x001F,
     "ReturnCurrentPlayingTrackIndex",
     kIpod,
     kNoReply,
     {Named(4, "track index", {{0xFFFFFFFF, "none"}})}},
    {0x001F, "GetTrackArtworkTimes", kAccessory, RepliedBy(0x002B), ArtworkTimesQuestion(), true,
     "Older consoles ask by this number, which the request has in the Display Remote lingo."},
    {0x0020, "GetIndexedPlayingTrackTitle", kAccessory, RepliedBy(0x0021), {U32("track index")}},
    {0x0021, "ReturnIndexedPlayingTrackTitle", kIpod, kNoReply, {Text("title")}},
    {0x0022,
     "GetIndexedPlayingTrackArtistName",
     kAccessory,
     RepliedBy(0x0023),
     {U32("track index")}},
    {0x0023, "ReturnIndexedPlayingTrackArtistName", kIpod, kNoReply, {Text("artist")}},
    {0x0024,
     "GetIndexedPlayingTrackAlbumName",
     kAccessory,
     RepliedBy(0x0025),
     {U32("track index")}},
    {0x0025, "ReturnIndexedPlayingTrackAlbumName", kIpod, kNoReply, {Text("album")}},
    {0x0026,
     "SetPlayStatusChangeNotification",
     kAccessory,
     kAcknowledged,
     {ChoiceBySize({{1, {Named(1, "notifications", {{0, "off"}, {1, "on"}})}},
                    {4, {Bits(4, "notifications", kNotifications)}}})}},
    {0x0027, "PlayStatusChangeNotification", kIpod, kNoReply, NotificationFields()},
    {0x0028, "PlayCurrentSelection", kAccessory, kAcknowledged, {U32("track index")}},
    {0x0029, "PlayControl", kAccessory, kAcknowledged, {Named(1, "control", kPlayControls)}},
    {0x002A, "GetTrackArtworkTimes", kAccessory, RepliedBy(0x002B), ArtworkTimesQuestion()},
    {0x002B, "RetTrackArtworkTimes", kIpod, kNoReply, ArtworkTimes()},
    {0x002C, "GetShuffle", kAccessory, RepliedBy(0x002D), {}},
    {0x002D, "ReturnShuffle", kIpod, kNoReply, {Named(1, "shuffle", kShuffleModes)}},
    {0x002E,
     "SetShuffle",
     kAccessory,
     kAcknowledged,
     {Named(1, "shuffle", kShuffleModes), Optional(Named(1, "restore on exit", YesOrNo()))}},
    {0x002F, "GetRepeat", kAccessory, RepliedBy(0x0030), {}},
    {0x0030, "ReturnRepeat", kIpod, kNoReply, {Named(1, "repeat", kRepeatModes)}},
    {0x0031,
     "SetRepeat",
     kAccessory,
     kAcknowledged,
     {Named(1, "repeat", kRepeatModes), Optional(Named(1, "restore on exit", YesOrNo()))}},
    {0x0032, "SetDisplayImage", kAccessory, kAcknowledged, DisplayImageFields()},
    {0x0033, "GetMonoDisplayImageLimits", kAccessory, RepliedBy(0x0034), {}},
    {0x0034, "ReturnMonoDisplayImageLimits", kIpod, kNoReply, ImageLimitFields()},
    {0x0035, "GetNumPlayingTracks", kAccessory, RepliedBy(0x0036), {}},
    {0x0036, "ReturnNumPlayingTracks", kIpod, kNoReply, {U32("track count")}},
    {0x0037, "SetCurrentPlayingTrack", kAccessory, kAcknowledged, {U32("track index")}},
    {0x0038,
     "SelectSortDBRecord",
     kAccessory,
     kAcknowledged,
     {Named(1, "category", kCategories), U32("record index"), Named(1, "sort order", kSortOrders)}},
    {0x0039, "GetColorDisplayImageLimits", kAccessory, RepliedBy(0x003A), {}},
    {0x003A,
     "ReturnColorDisplayImageLimits",
     kIpod,
     kNoReply,
     {Repeated("limits", ImageLimitFields())}},
    {0x003B,
     "ResetDBSelectionHierarchy",
     kAccessory,
     kAcknowledged,
     {Named(1, "hierarchy", {{1, "audio"}, {2, "video"}})}},
    {0x0040,
     "RetrieveDBTrackInfo",
     kAccessory,
     StreamedBy(0x0041),
     {U32("first track"), U32("track count"), Bits(1, "information", {{0x40, "length"}})}},
    {0x0041,
     "ReturnDBTrackInfo",
     kIpod,
     kNoReply,
     {U32("track index"), Named(1, "type", {{0x40, "length"}}),
      Choice("type", {{0x40, {U32("track length", "ms")}}})}},
};

}  // namespace

const std::vector<Command>& ExtendedCommands() { return kExtendedCommands; }

}  // namespace ipodwire
