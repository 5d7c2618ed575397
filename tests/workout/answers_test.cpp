// SPDX-License-Identifier: MIT
// What the accessory tells the iPod about its Sports and Storage lingoes: the exact bytes, with
// and without transaction identifiers, and what the session remembers of it.
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WorkoutAnswers : public SessionTest {
 protected:
  void ReturnSportsCaps() { (session_.*CIpodCommPeer::kReturn_SportsDeviceCaps)(); }
  void ReturnSportsVersion() { (session_.*CIpodCommPeer::kReturn_SportsDeviceVersion)(); }
};

TEST_F(WorkoutAnswers, SportsVersionIsOnePointOne) {
  ReturnSportsVersion();
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 09 02 01 01 EF"));
}

TEST_F(WorkoutAnswers, SportsVersionCarriesTheOwnIdentifier) {
  TurnOnTransactionIds(0x1234);
  CIpodCommPeer::IpodTransactionIds(session_)[9] = 0x4321;
  ReturnSportsVersion();
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 06 09 02 12 34 01 01 A7"));
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(session_), 0x1235);
}

TEST_F(WorkoutAnswers, SportsCapabilitiesAreTwoZeroZero) {
  ReturnSportsCaps();
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 05 09 04 02 00 00 EC"));
}

TEST_F(WorkoutAnswers, SportsCapabilitiesEchoTheRequestsIdentifier) {
  TurnOnTransactionIds(0x1234);
  CIpodCommPeer::IpodTransactionIds(session_)[9] = 0x4321;
  ReturnSportsCaps();
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 07 09 04 43 21 02 00 00 86"));
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(session_), 0x1235);
}

TEST_F(WorkoutAnswers, StorageCapabilitiesAreTwentyTwoBytes) {
  EXPECT_EQ(session_.Command_ST_RetAccessoryCaps(1, 2), 1);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 18 0C 82 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                          "FF 01 02 58"));
}

TEST_F(WorkoutAnswers, StorageCapabilitiesCarryTheGivenVersion) {
  EXPECT_EQ(session_.Command_ST_RetAccessoryCaps(0xFE, 0x80), 1);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 18 0C 82 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                          "FF FE 80 DD"));
}

TEST_F(WorkoutAnswers, StorageCapabilitiesEchoTheRequestsIdentifier) {
  TurnOnTransactionIds(0x1234);
  CIpodCommPeer::IpodTransactionIds(session_)[12] = 0x4321;
  EXPECT_EQ(session_.Command_ST_RetAccessoryCaps(1, 2), 1);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 1A 0C 82 43 21 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
                          "00 00 FF 01 02 F2"));
}

TEST_F(WorkoutAnswers, StorageCapabilitiesStartTheWriteOffsetOverAndAwaitNothing) {
  CIpodCommPeer::StorageWriteOffset(session_) = 12345;
  const auto elapsed_us = Elapsed([&] { session_.Command_ST_RetAccessoryCaps(1, 2); });
  EXPECT_EQ(CIpodCommPeer::StorageWriteOffset(session_), 0U);
  EXPECT_LE(elapsed_us, 22 * test::kMillisecond);
}

TEST_F(WorkoutAnswers, StorageCapabilitiesThatCannotBeWrittenFailAndStillStartTheOffsetOver) {
  session_.Close();
  CIpodCommPeer::StorageWriteOffset(session_) = 12345;
  EXPECT_EQ(session_.Command_ST_RetAccessoryCaps(1, 2), 0);
  EXPECT_EQ(CIpodCommPeer::StorageWriteOffset(session_), 0U);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(WorkoutAnswers, SportsAnswersOnAClosedPortAreForgotten) {
  session_.Close();
  ReturnSportsCaps();
  ReturnSportsVersion();
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(WorkoutAnswers, SupportIsWhatIdentificationFoundUntilTheSessionIsClosed) {
  EXPECT_EQ(session_.SupportsSports(), 0);
  CIpodCommPeer::Identity(session_).sports_supported = 1;
  EXPECT_EQ(session_.SupportsSports(), 1);
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_EQ(session_.Open(), 0);
  EXPECT_EQ(session_.SupportsSports(), 1);
  session_.Close();
  EXPECT_EQ(session_.SupportsSports(), 0);
}

}  // namespace
