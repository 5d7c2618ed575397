// SPDX-License-Identifier: MIT
// The commands of the remote, Sports and Storage lingoes in words.
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

TEST(TheSimpleRemote, TellsWhichButtonsAreHeldLeastSignificantByteFirst) {
  EXPECT_EQ(FromAccessory({0x02, 0x00, 0x01}),
            "Simple Remote ContextButtonStatus: buttons play/pause");
  EXPECT_EQ(FromAccessory({0x02, 0x00, 0x00}), "Simple Remote ContextButtonStatus: buttons none");
  EXPECT_EQ(FromAccessory({0x02, 0x00, 0x00, 0x00, 0x01}),
            "Simple Remote ContextButtonStatus: buttons repeat");
  EXPECT_EQ(FromAccessoryWithId({0x02, 0x00, 0x00, 0x09, 0x80, 0x80, 0x00, 0x80}),
            "Simple Remote ContextButtonStatus id 0x0009: buttons stop + shuffle + 0x80000000");
  EXPECT_EQ(FromAccessory({0x02, 0x00, 0, 0, 0, 0, 1}),
            "Simple Remote ContextButtonStatus: buttons none, surplus 01 ! 1 byte more than the "
            "command has");
  EXPECT_EQ(FromAccessory({0x02, 0x00}),
            "Simple Remote ContextButtonStatus ! cut short at buttons");
}

TEST(TheSimpleRemote, AcknowledgesTheOtherButtons) {
  EXPECT_EQ(FromAccessory({0x02, 0x02, 0x02}),
            "Simple Remote ImageButtonStatus: buttons 0x00000002");
  EXPECT_EQ(FromAccessory({0x02, 0x03, 0x00, 0x01}),
            "Simple Remote VideoButtonStatus: buttons 0x00000100");
  EXPECT_EQ(FromAccessory({0x02, 0x04, 0x00}), "Simple Remote AudioButtonStatus: buttons none");
  EXPECT_EQ(FromIpod({0x02, 0x01, 0x00, 0x04}),
            "Simple Remote ACK: status ok, command AudioButtonStatus");
}

TEST(TheDisplayRemote, TellsFactsOfTracks) {
  EXPECT_EQ(FromAccessory({0x03, 0x12, 0x00, 0x00, 0x00, 0x00, 0x05, 0x00, 0x00}),
            "Display Remote GetIndexedPlayingTrackInfo: type capabilities, track index 5, chapter "
            "index 0");
  EXPECT_EQ(FromIpodWithId({0x03, 0x13, 0x00, 0x15, 0x00, 0x00, 0x00, 0x00, 0x81, 0x00, 0x00, 0x03,
                            0xE8, 0x00, 0x02}),
            "Display Remote RetIndexedPlayingTrackInfo id 0x0015: type capabilities, capabilities "
            "audiobook + video, track length 1000 ms, chapter count 2");
  EXPECT_EQ(FromIpod(Bytes{0x03, 0x13, 0x01, 0x00, 0x00, 0x00, 0x0A} + Ascii("One") + Bytes{0x00}),
            "Display Remote RetIndexedPlayingTrackInfo: type chapter, chapter begins at 10 ms, "
            "chapter \"One\"");
  const std::pair<std::uint8_t, std::string> texts[] = {
      {2, "artist"}, {3, "album"}, {4, "genre"}, {5, "title"}, {6, "composer"}};
  for (const auto& [type, name] : texts) {
    EXPECT_EQ(FromIpod(Bytes{0x03, 0x13, type} + Ascii("It") + Bytes{0x00}),
              "Display Remote RetIndexedPlayingTrackInfo: type " + name + ", " + name + " \"It\"");
  }
  EXPECT_EQ(
      FromIpod(Bytes{0x03, 0x13, 0x07, 0x01, 0x00, 0x00} + Ascii("La") + Bytes{0x00}),
      "Display Remote RetIndexedPlayingTrackInfo: type lyrics, part flags 0x01, part 0, lyrics "
      "\"La\"");
  EXPECT_EQ(FromIpod({0x03, 0x13, 0x08, 0x04, 0x01, 0x00, 0x01}),
            "Display Remote RetIndexedPlayingTrackInfo: type artwork count, artworks [{format ID "
            "1025, count 1}]");
  EXPECT_EQ(FromIpod({0x03, 0x00, 0x03, 0x12}),
            "Display Remote ACK: status bad parameter, command GetIndexedPlayingTrackInfo");
}

TEST(TheDisplayRemote, SendsArtwork) {
  EXPECT_EQ(FromAccessory({0x03, 0x18, 0x00, 0x00, 0x00, 0x01, 0x04, 0x01, 0x00, 0x00, 0x00, 0x00}),
            "Display Remote GetTrackArtworkData: track index 1, format ID 1025, time offset 0 ms");
  EXPECT_EQ(FromIpod({0x03, 0x19, 0x00, 0x02, 0xEE}),
            "Display Remote RetTrackArtworkData: part 2, pixels EE");
  EXPECT_EQ(FromAccessory({0x03, 0x1F, 0x00, 0x00, 0x00, 0x01, 0x04, 0x01, 0x00, 0x00, 0x00, 0x01}),
            "Display Remote GetTrackArtworkTimes: track index 1, format ID 1025, artwork index 0, "
            "count 1");
  EXPECT_EQ(FromIpod({0x03, 0x20, 0x00, 0x00, 0x00, 0x07}),
            "Display Remote RetTrackArtworkTimes: times [7 ms]");
}

TEST(TheSportsLingo, AsksBothSidesWhatTheyCan) {
  EXPECT_EQ(FromIpod({0x09, 0x01}), "Sports GetDeviceVersion");
  EXPECT_EQ(FromAccessory({0x09, 0x02, 0x01, 0x01}), "Sports RetDeviceVersion: version 1.01");
  EXPECT_EQ(FromIpodWithId({0x09, 0x03, 0x00, 0x03}), "Sports GetDeviceCaps id 0x0003");
  EXPECT_EQ(FromAccessoryWithId({0x09, 0x04, 0x00, 0x03, 0x02, 0x00, 0x00}),
            "Sports RetDeviceCaps id 0x0003: capabilities 02 00 00");
  EXPECT_EQ(FromAccessory({0x09, 0x83}), "Sports GetiPodCaps");
  EXPECT_EQ(FromIpod({0x09, 0x84, 0x00, 0x03, 0x00}),
            "Sports RetiPodCaps: capabilities workouts + user data, more 0x00");
}

TEST(TheSportsLingo, ReadsAndSetsTheDataOfUsers) {
  EXPECT_EQ(FromAccessory({0x09, 0x85}), "Sports GetUserIndex");
  EXPECT_EQ(FromIpod({0x09, 0x86, 0x01}), "Sports RetUserIndex: user index 01");
  EXPECT_EQ(FromAccessory({0x09, 0x88, 0x03}), "Sports GetUserData: type weight");
  EXPECT_EQ(FromIpod({0x09, 0x89, 0x02, 0x02}), "Sports RetUserData: type flag, flag 2");
  EXPECT_EQ(FromIpod({0x09, 0x89, 0x03, 0x02, 0xBC}),
            "Sports RetUserData: type weight, weight 700");
  EXPECT_EQ(FromIpod({0x09, 0x89, 0x04, 0x21}), "Sports RetUserData: type value, value 33");
  EXPECT_EQ(FromAccessory({0x09, 0x8A, 0x03, 0x02, 0xBC}),
            "Sports SetUserData: type weight, weight 700");
  EXPECT_EQ(FromIpod({0x09, 0x80, 0x00, 0x8A}), "Sports iPodACK: status ok, command SetUserData");
  EXPECT_EQ(FromAccessory({0x09, 0x00, 0x00, 0x03}),
            "Sports ACK: status ok, command GetDeviceCaps");
}

TEST(TheStorageLingo, TellsWhatFits) {
  EXPECT_EQ(FromAccessory({0x0C, 0x01}), "Storage GetiPodCaps");
  EXPECT_EQ(
      FromIpod({0x0C, 0x02, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x10,
                0x00, 0x00, 0x01, 0xF4, 0,    0,    0,    0,    0,    0,    0x01, 0x02}),
      "Storage RetiPodCaps: total space 4294967296 bytes, largest file 1048576 bytes, largest "
      "write 500 bytes, reserved 00 00 00 00 00 00, version 1.02");
  EXPECT_EQ(FromAccessory({0x0C, 0x10}), "Storage GetiPodFreeSpace");
  EXPECT_EQ(FromIpod({0x0C, 0x11, 0x00, 0x00, 0x00, 0x00, 0x01, 0x02, 0x03, 0x04}),
            "Storage RetiPodFreeSpace: free space 16909060 bytes");
  EXPECT_EQ(FromIpod({0x0C, 0x81}), "Storage GetAccessoryCaps");
  EXPECT_EQ(FromAccessory({0x0C, 0x82, 0, 0, 0, 0, 0, 0, 0, 0,    0,    0,
                           0,    0,    0, 0, 0, 0, 0, 0, 0, 0xFF, 0x01, 0x02}),
            "Storage RetAccessoryCaps: total space 0 bytes, largest file 0 bytes, largest write 0 "
            "bytes, reserved 00 00 00 00 00 FF, version 1.02");
}

TEST(TheStorageLingo, WritesFiles) {
  EXPECT_EQ(FromAccessory(Bytes{0x0C, 0x12, 0x02, 0x00, 0x00, 0x00, 0x0B} + Ascii("</gymData>")),
            "Storage OpeniPodFeatureFile: feature gym equipment, options append data + append iPod "
            "information + append signature, ending \"</gymData>\"");
  EXPECT_EQ(FromIpod({0x0C, 0x04, 0x07}), "Storage RetiPodFileHandle: file handle 7");
  EXPECT_EQ(FromAccessoryWithId(Bytes{0x0C, 0x07, 0x00, 0x44, 0x00, 0x00, 0x01, 0x00, 0x07} +
                                Ascii("<a>\n")),
            "Storage WriteiPodFileData id 0x0044: offset 256 bytes, file handle 7, data "
            "\"<a>\\x0A\"");
  EXPECT_EQ(FromAccessory({0x0C, 0x08, 0x07}), "Storage CloseiPodFile: file handle 7");
  EXPECT_EQ(FromIpod({0x0C, 0x00, 0x02, 0x07}),
            "Storage ACK: status out of resources, command WriteiPodFileData");
}

TEST(AnUnknownLingo, IsShownWithItsBytes) {
  EXPECT_EQ(FromIpod({0x0B, 0x01, 0xAA, 0xBB}),
            "lingo 0x0B command 0x01: data AA BB ! unknown command");
}

}  // namespace
