// SPDX-License-Identifier: MIT
// Information about the tracks of the now-playing list: requests and raw answers.
#include "support/session_test.h"

namespace {

using test::SessionTest;
using ::testing::ElementsAre;

class TrackInfo : public SessionTest {};

TEST_F(TrackInfo, InfoRequestCarriesTypeTrackAndChapter) {
  Answer("FF 55 09 03 12 05 00 00 01 02 00 03 D7", "FF 55 08 03 13 05 00 03 41 42 00 57");
  unsigned char buffer[16] = {};
  EXPECT_EQ(session_.Command_GetIndexedPlayingTrackInfo(5, 0x102, 3, buffer, sizeof buffer), 1);
  EXPECT_EQ(test::ToHex(buffer, 7), "05 00 03 41 42 00 00");
}

TEST_F(TrackInfo, InfoIsCutToTheBuffer) {
  Answer("FF 55 09 03 12 05 00 00 01 02 00 03 D7", "FF 55 08 03 13 05 00 03 41 42 00 57");
  unsigned char buffer[] = {0xEE, 0xEE, 0xEE, 0xEE, 0xEE};
  EXPECT_EQ(session_.Command_GetIndexedPlayingTrackInfo(5, 0x102, 3, buffer, 4), 1);
  EXPECT_EQ(test::ToHex(buffer, 5), "05 00 03 41 EE");
}

// Hosts pass sizes that they have not measured.
TEST_F(TrackInfo, EverySizeBeyondTheAnswerCopiesItWhole) {
  for (const unsigned long size : {0x7FFFFFFFUL, 0x80000000UL, 0xFFFFFFFFUL}) {
    Answer("FF 55 09 03 12 05 00 00 01 02 00 03 D7", "FF 55 08 03 13 05 00 03 41 42 00 57");
    unsigned char buffer[16] = {};
    EXPECT_EQ(session_.Command_GetIndexedPlayingTrackInfo(5, 0x102, 3, buffer, size), 1);
    EXPECT_EQ(test::ToHex(buffer, 7), "05 00 03 41 42 00 00") << size;
  }
}

TEST_F(TrackInfo, UnansweredInfoFails) {
  unsigned char buffer[] = {0xEE};
  EXPECT_EQ(session_.Command_GetIndexedPlayingTrackInfo(5, 0x102, 3, buffer, 1), 0);
  EXPECT_EQ(buffer[0], 0xEE);
}

using TextOperation = int (CIpodComm::*)(unsigned long, unsigned char*, unsigned long);

struct Text {
  const char* name;
  TextOperation operation;
  const char* request;
  const char* reply;
  const char* text;
};

class TrackText : public SessionTest, public ::testing::WithParamInterface<Text> {};

TEST_P(TrackText, IsCopiedAsItComes) {
  Answer(GetParam().request, GetParam().reply);
  unsigned char buffer[5] = {0xEE, 0xEE, 0xEE, 0xEE, 0xEE};
  EXPECT_EQ((session_.*GetParam().operation)(0x102, buffer, 5), 1);
  EXPECT_EQ(test::ToHex(buffer, 5), GetParam().text);
  EXPECT_THAT(DrainSent(), ElementsAre(GetParam().request));
}

TEST_P(TrackText, IsCutWithoutATerminator) {
  Answer(GetParam().request, GetParam().reply);
  unsigned char buffer[2] = {0xEE, 0xEE};
  EXPECT_EQ((session_.*GetParam().operation)(0x102, buffer, 1), 1);
  EXPECT_EQ(test::ToHex(buffer, 1), std::string(GetParam().text).substr(0, 2));
  EXPECT_EQ(buffer[1], 0xEE);
}

TEST_P(TrackText, FailsUnanswered) {
  unsigned char buffer[] = {0xEE};
  EXPECT_EQ((session_.*GetParam().operation)(0x102, buffer, 1), 0);
  EXPECT_EQ(buffer[0], 0xEE);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, TrackText,
    ::testing::Values(
        Text{"Title", &CIpodComm::Command_GetIndexedPlayingTrackTitle,
             "FF 55 07 04 00 20 00 00 01 02 D2", "FF 55 06 04 00 21 41 62 00 32", "41 62 00 EE EE"},
        Text{"Artist", &CIpodComm::Command_GetIndexedPlayingTrackArtistName,
             "FF 55 07 04 00 22 00 00 01 02 D0", "FF 55 06 04 00 23 C3 A9 00 67", "C3 A9 00 EE EE"},
        Text{"Album", &CIpodComm::Command_GetIndexedPlayingTrackAlbumName,
             "FF 55 07 04 00 24 00 00 01 02 CE", "FF 55 05 04 00 25 43 00 8F", "43 00 EE EE EE"}),
    [](const auto& text) { return text.param.name; });

}  // namespace
