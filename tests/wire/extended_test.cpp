// SPDX-License-Identifier: MIT
// The commands of the Extended Interface lingo in words.
#include <gtest/gtest.h>

#include "wire_test_support.h"

namespace {

using wire_test::Ascii;
using wire_test::FromAccessory;
using wire_test::FromAccessoryWithId;
using wire_test::FromIpod;
using wire_test::FromIpodWithId;
using wire_test::operator+;
using wire_test::Bytes;

TEST(TheExtendedInterface, AcknowledgesCommandsOfTwoBytes) {
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x01, 0x00, 0x00, 0x29}),
            "Extended Interface ACK: status ok, command PlayControl");
  EXPECT_EQ(FromIpodWithId({0x04, 0x00, 0x01, 0x00, 0x21, 0x04, 0x00, 0x17}),
            "Extended Interface ACK id 0x0021: status unknown ID, command SelectDBRecord");
  EXPECT_EQ(
      FromIpod({0x04, 0x00, 0x01, 0x06, 0x00, 0x18, 0x00, 0x00, 0x01, 0xF4}),
      "Extended Interface ACK: status pending, command GetNumberCategorizedDBRecords, longest "
      "wait 500 ms");
}

TEST(TheExtendedInterface, TellsChapters) {
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x02}),
            "Extended Interface GetCurrentPlayingTrackChapterInfo");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x03, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x00}),
            "Extended Interface ReturnCurrentPlayingTrackChapterInfo: chapter index none, chapter "
            "count 0");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x04, 0x00, 0x00, 0x00, 0x02}),
            "Extended Interface SetCurrentPlayingTrackChapter: chapter index 2");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x05, 0x00, 0x00, 0x00, 0x02}),
            "Extended Interface GetCurrentPlayingTrackChapterPlayStatus: chapter index 2");
  EXPECT_EQ(
      FromIpod({0x04, 0x00, 0x06, 0x00, 0x00, 0x75, 0x30, 0x00, 0x00, 0x03, 0xE8}),
      "Extended Interface ReturnCurrentPlayingTrackChapterPlayStatus: chapter length 30000 ms, "
      "position 1000 ms");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x07}),
            "Extended Interface GetCurrentPlayingTrackChapterName");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x07, 0x00, 0x00, 0x00, 0x01}),
            "Extended Interface GetCurrentPlayingTrackChapterName: chapter index 1");
  EXPECT_EQ(FromIpod(Bytes{0x04, 0x00, 0x08} + Ascii("One") + Bytes{0x00}),
            "Extended Interface ReturnCurrentPlayingTrackChapterName: chapter \"One\"");
}

TEST(TheExtendedInterface, TellsAndSetsTheSpeedOfAudiobooks) {
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x09}), "Extended Interface GetAudiobookSpeed");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x0A, 0xFF}),
            "Extended Interface ReturnAudiobookSpeed: speed slow");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x0B, 0x01, 0x01}),
            "Extended Interface SetAudiobookSpeed: speed fast, restore on exit yes");
}

TEST(TheExtendedInterface, TellsFactsOfTracks) {
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x0C, 0x07, 0x00, 0x00, 0x00, 0x05, 0x00, 0x01}),
            "Extended Interface GetIndexedPlayingTrackInfo: type artwork count, track index 5, "
            "chapter index 1");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x0D, 0x00, 0x00, 0x00, 0x00, 0x86, 0x00, 0x03, 0x47, 0xD8, 0x00,
                      0x03}),
            "Extended Interface ReturnIndexedPlayingTrackInfo: type capabilities, capabilities "
            "chapters + artwork + video, track length 215000 ms, chapter count 3");
  EXPECT_EQ(FromIpod(Bytes{0x04, 0x00, 0x0D, 0x01} + Ascii("News") + Bytes{0x00}),
            "Extended Interface ReturnIndexedPlayingTrackInfo: type podcast, podcast \"News\"");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x0D, 0x02, 0x00, 0x1E, 0x0C, 0x01, 0x09, 0x07, 0xD8, 0x01}),
            "Extended Interface ReturnIndexedPlayingTrackInfo: type release date, second 0, minute "
            "30, hour 12, day 1, month 9, year 2008, weekday Monday");
  EXPECT_EQ(FromIpod(Bytes{0x04, 0x00, 0x0D, 0x03, 0x00}),
            "Extended Interface ReturnIndexedPlayingTrackInfo: type description, description \"\"");
  EXPECT_EQ(
      FromIpod(Bytes{0x04, 0x00, 0x0D, 0x04, 0x00, 0x00, 0x02} + Ascii("La") + Bytes{0x00}),
      "Extended Interface ReturnIndexedPlayingTrackInfo: type lyrics, part flags 0x00, part 2, "
      "lyrics \"La\"");
  EXPECT_EQ(FromIpod(Bytes{0x04, 0x00, 0x0D, 0x05} + Ascii("Jazz") + Bytes{0x00}),
            "Extended Interface ReturnIndexedPlayingTrackInfo: type genre, genre \"Jazz\"");
  EXPECT_EQ(FromIpod(Bytes{0x04, 0x00, 0x0D, 0x06} + Ascii("Bo") + Bytes{0x00}),
            "Extended Interface ReturnIndexedPlayingTrackInfo: type composer, composer \"Bo\"");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x0D, 0x07, 0x04, 0x01, 0x00, 0x01, 0x04, 0x02, 0x00, 0x02}),
            "Extended Interface ReturnIndexedPlayingTrackInfo: type artwork count, artworks "
            "[{format ID 1025, count 1}, {format ID 1026, count 2}]");
}

TEST(TheExtendedInterface, SendsArtwork) {
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x0E}), "Extended Interface GetArtworkFormats");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x0F, 0x04, 0x01, 0x02, 0x00, 0x10, 0x00, 0x20}),
            "Extended Interface RetArtworkFormats: formats [{format ID 1025, pixel format RGB 565, "
            "width 16 pixels, height 32 pixels}]");
  EXPECT_EQ(
      FromAccessory({0x04, 0x00, 0x10, 0x00, 0x00, 0x00, 0x05, 0x04, 0x01, 0x00, 0x00, 0x03, 0xE8}),
      "Extended Interface GetTrackArtworkData: track index 5, format ID 1025, time offset 1000 ms");
  EXPECT_EQ(
      FromIpod({0x04, 0x00, 0x11, 0x00, 0x00, 0x02, 0x00, 0x10, 0x00, 0x10, 0x00, 0x01,
                0x00, 0x02, 0x00, 0x0E, 0x00, 0x0F, 0x00, 0x00, 0x00, 0x20, 0xAB, 0xCD}),
      "Extended Interface RetTrackArtworkData: part 0, pixel format RGB 565, "
      "width 16 pixels, height 16 pixels, left 1 pixels, top 2 pixels, right 14 pixels, bottom "
      "15 pixels, row size 32 bytes, pixels AB CD");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x11, 0x00, 0x01, 0xAB, 0xCD}),
            "Extended Interface RetTrackArtworkData: part 1, pixels AB CD");
  EXPECT_EQ(
      FromAccessory({0x04, 0x00, 0x2A, 0x00, 0x00, 0x00, 0x05, 0x04, 0x01, 0x00, 0x00, 0x00, 0x01}),
      "Extended Interface GetTrackArtworkTimes: track index 5, format ID 1025, artwork index 0, "
      "count 1");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x2B, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x03, 0xE8}),
            "Extended Interface RetTrackArtworkTimes: times [0 ms, 1000 ms]");
}

TEST(TheExtendedInterface, ReadsTheSameNumberByItsSender) {
  EXPECT_EQ(
      FromAccessory({0x04, 0x00, 0x1F, 0x00, 0x00, 0x00, 0x05, 0x04, 0x01, 0x00, 0x00, 0x00, 0x01}),
      "Extended Interface GetTrackArtworkTimes: track index 5, format ID 1025, artwork index 0, "
      "count 1");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x1F, 0x00, 0x00, 0x00, 0x05}),
            "Extended Interface ReturnCurrentPlayingTrackIndex: track index 5");
}

TEST(TheExtendedInterface, BrowsesTheDatabase) {
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x16}), "Extended Interface ResetDBSelection");
  EXPECT_EQ(FromAccessoryWithId({0x04, 0x00, 0x17, 0x00, 0x30, 0x02, 0x00, 0x00, 0x00, 0x07}),
            "Extended Interface SelectDBRecord id 0x0030: category artist, record index 7");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x18, 0x05}),
            "Extended Interface GetNumberCategorizedDBRecords: category track");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x19, 0x00, 0x00, 0x01, 0x00}),
            "Extended Interface ReturnNumberCategorizedDBRecords: record count 256");
  EXPECT_EQ(
      FromAccessory({0x04, 0x00, 0x1A, 0x01, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x03}),
      "Extended Interface RetrieveCategorizedDatabaseRecords: category playlist, first record 2, "
      "record count 3");
  EXPECT_EQ(FromIpod(Bytes{0x04, 0x00, 0x1B, 0x00, 0x00, 0x00, 0x02} + Ascii("Mix") + Bytes{0x00}),
            "Extended Interface ReturnCategorizedDatabaseRecord: record index 2, record \"Mix\"");
  EXPECT_EQ(
      FromAccessory({0x04, 0x00, 0x38, 0x03, 0x00, 0x00, 0x00, 0x01, 0x04}),
      "Extended Interface SelectSortDBRecord: category album, record index 1, sort order name");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x3B, 0x02}),
            "Extended Interface ResetDBSelectionHierarchy: hierarchy video");
  EXPECT_EQ(
      FromAccessory({0x04, 0x00, 0x40, 0x00, 0x00, 0x00, 0x09, 0x00, 0x00, 0x00, 0x01, 0x40}),
      "Extended Interface RetrieveDBTrackInfo: first track 9, track count 1, information length");
  EXPECT_EQ(
      FromIpod({0x04, 0x00, 0x41, 0x00, 0x00, 0x00, 0x09, 0x40, 0x00, 0x00, 0x07, 0xCF}),
      "Extended Interface ReturnDBTrackInfo: track index 9, type length, track length 1999 ms");
}

TEST(TheExtendedInterface, TellsWhatPlays) {
  EXPECT_EQ(FromAccessoryWithId({0x04, 0x00, 0x1C, 0x00, 0x07}),
            "Extended Interface GetPlayStatus id 0x0007");
  EXPECT_EQ(FromIpodWithId({0x04, 0x00, 0x1D, 0x00, 0x07, 0x00, 0x03, 0x47, 0xD8, 0x00, 0x00, 0x05,
                            0xDC, 0x01}),
            "Extended Interface ReturnPlayStatus id 0x0007: track length 215000 ms, position 1500 "
            "ms, state playing");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x1E}), "Extended Interface GetCurrentPlayingTrackIndex");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x1F, 0xFF, 0xFF, 0xFF, 0xFF}),
            "Extended Interface ReturnCurrentPlayingTrackIndex: track index none");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x20, 0x00, 0x00, 0x00, 0x03}),
            "Extended Interface GetIndexedPlayingTrackTitle: track index 3");
  EXPECT_EQ(FromIpod(Bytes{0x04, 0x00, 0x21} + Ascii("Run") + Bytes{0x00}),
            "Extended Interface ReturnIndexedPlayingTrackTitle: title \"Run\"");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x22, 0x00, 0x00, 0x00, 0x03}),
            "Extended Interface GetIndexedPlayingTrackArtistName: track index 3");
  EXPECT_EQ(FromIpod(Bytes{0x04, 0x00, 0x23} + Ascii("Ada") + Bytes{0x00}),
            "Extended Interface ReturnIndexedPlayingTrackArtistName: artist \"Ada\"");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x24, 0x00, 0x00, 0x00, 0x03}),
            "Extended Interface GetIndexedPlayingTrackAlbumName: track index 3");
  EXPECT_EQ(FromIpod(Bytes{0x04, 0x00, 0x25} + Ascii("Sky") + Bytes{0x00}),
            "Extended Interface ReturnIndexedPlayingTrackAlbumName: album \"Sky\"");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x35}), "Extended Interface GetNumPlayingTracks");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x36, 0x00, 0x00, 0x00, 0x0C}),
            "Extended Interface ReturnNumPlayingTracks: track count 12");
}

TEST(TheExtendedInterface, AsksForAndSendsPlayStatusNotifications) {
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x26, 0x01}),
            "Extended Interface SetPlayStatusChangeNotification: notifications on");
  EXPECT_EQ(
      FromAccessory({0x04, 0x00, 0x26, 0x00, 0x00, 0x00, 0x1D}),
      "Extended Interface SetPlayStatusChangeNotification: notifications stopped + track index "
      "+ position in milliseconds + position in seconds");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x27, 0x00}),
            "Extended Interface PlayStatusChangeNotification: change stopped");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x27, 0x01, 0x00, 0x00, 0x00, 0x04}),
            "Extended Interface PlayStatusChangeNotification: change track, track index 4");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x27, 0x04, 0x00, 0x01, 0x00, 0x00}),
            "Extended Interface PlayStatusChangeNotification: change position, position 65536 ms");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x27, 0x06, 0x0B}),
            "Extended Interface PlayStatusChangeNotification: change status, status paused");
  EXPECT_EQ(
      FromIpodWithId({0x04, 0x00, 0x27, 0x01, 0x02, 0x07, 0x00, 0x00, 0x00, 0x41}),
      "Extended Interface PlayStatusChangeNotification id 0x0102: change position, position 65 "
      "s");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x27, 0x0C, 0x01}),
            "Extended Interface PlayStatusChangeNotification: change 12, data 01 ! unknown change "
            "12");
}

TEST(TheExtendedInterface, ControlsThePlayer) {
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x28, 0x00, 0x00, 0x00, 0x02}),
            "Extended Interface PlayCurrentSelection: track index 2");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x29, 0x02}),
            "Extended Interface PlayControl: control stop");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x29, 0x0B}),
            "Extended Interface PlayControl: control pause");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x2C}), "Extended Interface GetShuffle");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x2D, 0x02}), "Extended Interface ReturnShuffle: shuffle albums");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x2E, 0x01, 0x01}),
            "Extended Interface SetShuffle: shuffle tracks, restore on exit yes");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x2F}), "Extended Interface GetRepeat");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x30, 0x01}), "Extended Interface ReturnRepeat: repeat one");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x31, 0x02, 0x00}),
            "Extended Interface SetRepeat: repeat all, restore on exit no");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x37, 0x00, 0x00, 0x00, 0x08}),
            "Extended Interface SetCurrentPlayingTrack: track index 8");
}

TEST(TheExtendedInterface, ShowsPicturesOnTheIpod) {
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x33}), "Extended Interface GetMonoDisplayImageLimits");
  EXPECT_EQ(FromIpod({0x04, 0x00, 0x34, 0x00, 0x80, 0x00, 0x40, 0x01}),
            "Extended Interface ReturnMonoDisplayImageLimits: width 128 pixels, height 64 pixels, "
            "pixel format monochrome");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x39}), "Extended Interface GetColorDisplayImageLimits");
  EXPECT_EQ(
      FromIpod({0x04, 0x00, 0x3A, 0x00, 0xB0, 0x00, 0x84, 0x02}),
      "Extended Interface ReturnColorDisplayImageLimits: limits [{width 176 pixels, height 132 "
      "pixels, pixel format RGB 565}]");
  EXPECT_EQ(
      FromAccessory({0x04, 0x00, 0x32, 0x00, 0x00, 0x01, 0x00, 0x80, 0x00, 0x40, 0x00, 0x00, 0x00,
                     0x10, 0x00, 0x01}),
      "Extended Interface SetDisplayImage: part 0, pixel format monochrome, width 128 pixels, "
      "height 64 pixels, row size 16 bytes, pixels 00 01");
  EXPECT_EQ(FromAccessory({0x04, 0x00, 0x32, 0x00, 0x01, 0x02, 0x03}),
            "Extended Interface SetDisplayImage: part 1, pixels 02 03");
}

TEST(TheExtendedInterface, ShowsAnUnknownCommandWithItsBytes) {
  EXPECT_EQ(FromIpod({0x04, 0x01, 0x99, 0x0A}),
            "Extended Interface command 0x0199: data 0A ! unknown command");
}

TEST(TheExtendedInterface, TellsOfASizeThatNoFormOfTheCommandHas) {
  EXPECT_EQ(
      FromAccessory({0x04, 0x00, 0x26, 0x00, 0x01}),
      "Extended Interface SetPlayStatusChangeNotification: data 00 01 ! 2 bytes of data, which "
      "is no size that the command has");
}

}  // namespace
