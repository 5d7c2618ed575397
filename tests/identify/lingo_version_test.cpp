// SPDX-License-Identifier: MIT
// Asking for a lingo's protocol version: the frame, both forms of the result, which lingoes the
// session remembers, and what counts as failure.
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LingoVersion : public SessionTest {
 protected:
  int Ask(unsigned char lingo) {
    return session_.Command_RequestLingoProtocolVersion(lingo, &major_, &minor_);
  }

  unsigned char major_ = 0xA1;
  unsigned char minor_ = 0xA2;
};

TEST_F(LingoVersion, IsAskedForByItsNumber) {
  Answer("FF 55 03 00 0F 04 EA", "FF 55 05 00 10 04 01 0C DA");
  EXPECT_EQ(Ask(4), 1);
  EXPECT_EQ(major_, 1);
  EXPECT_EQ(minor_, 12);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 00 0F 04 EA"));
}

TEST_F(LingoVersion, OutputsAreOptional) {
  Answer("FF 55 03 00 0F 04 EA", "FF 55 05 00 10 04 01 0C DA");
  EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(4, &major_, nullptr), 1);
  EXPECT_EQ(major_, 1);
  EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(4, nullptr, &minor_), 1);
  EXPECT_EQ(minor_, 12);
  EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(4, nullptr, nullptr), 1);
}

TEST_F(LingoVersion, GoesIntoARecord) {
  Answer("FF 55 03 00 0F 04 EA", "FF 55 05 00 10 04 01 0C DA");
  tagIPOD_VERSION version = {0xA1, 0xA2};
  EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(4, &version), 1);
  EXPECT_EQ(version.major, 1);
  EXPECT_EQ(version.minor, 12);
}

TEST_F(LingoVersion, NullRecordFailsUnasked) {
  EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(4, static_cast<tagIPOD_VERSION*>(nullptr)),
            0);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(LingoVersion, StaysUntouchedWithoutAnAnswer) {
  tagIPOD_VERSION version = {0xA1, 0xA2};
  EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(4, &version), 0);
  EXPECT_EQ(version.major, 0xA1);
  EXPECT_EQ(version.minor, 0xA2);
  EXPECT_THAT(DrainSent(),
              ElementsAre("FF 55 03 00 0F 04 EA", "FF 55 03 00 0F 04 EA", "FF 55 03 00 0F 04 EA"));
}

// The exchange itself succeeds after a rejection and silence; the ACK makes it a failure.
TEST_F(LingoVersion, StaysUntouchedWhenRejected) {
  Answer("FF 55 03 00 0F 04 EA", "FF 55 04 00 02 04 0F E7");
  EXPECT_EQ(Ask(4), 0);
  EXPECT_EQ(major_, 0xA1);
  EXPECT_EQ(minor_, 0xA2);
  EXPECT_EQ(CIpodCommPeer::Identity(session_).extended.major, 0);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 00 0F 04 EA"));
}

// Any ACK on the way spoils it, also with the answer behind.
TEST_F(LingoVersion, AnAckInFrontOfTheAnswerIsAFailure) {
  Answer("FF 55 03 00 0F 04 EA",
         "FF 55 04 00 02 00 07 F3"
         "FF 55 05 00 10 04 01 0C DA");
  EXPECT_EQ(Ask(4), 0);
  EXPECT_EQ(major_, 0xA1);
}

TEST_F(LingoVersion, ShortAnswerIsCompletedByZeros) {
  Answer("FF 55 03 00 0F 04 EA", "FF 55 03 00 10 04 E9");
  EXPECT_EQ(Ask(4), 1);
  EXPECT_EQ(major_, 0);
  EXPECT_EQ(minor_, 0);
}

// ---- What the session remembers

// The versions that the session has on record, by lingo.
std::vector<int> Records(CIpodComm& session) {
  const auto& identity = CIpodCommPeer::Identity(session);
  const auto number = [](tagIPOD_VERSION version) { return version.major * 0x100 + version.minor; };
  return {number(identity.general), number(identity.display_remote), number(identity.extended),
          number(identity.sports), number(identity.storage)};
}

struct RecordRow {
  const char* name;
  int lingo;
  std::vector<int> records;  // General, Display Remote, Extended, Sports, Storage
};

class RememberedVersion : public LingoVersion, public ::testing::WithParamInterface<RecordRow> {};

TEST_P(RememberedVersion, IsThatOfTheLingoAsked) {
  CIpodCommPeer::Responses(session_).Append(test::Packet("FF 55 05 00 10 04 01 0C DA"));
  EXPECT_EQ(Ask(static_cast<unsigned char>(GetParam().lingo)), 1);
  EXPECT_EQ(Records(session_), GetParam().records);
  EXPECT_EQ(major_, 1);
}

INSTANTIATE_TEST_SUITE_P(Of, RememberedVersion,
                         ::testing::Values(RecordRow{"General", 0x00, {0x010C, 0, 0, 0, 0}},
                                           RecordRow{"SimpleRemoteIsNone", 0x02, {0, 0, 0, 0, 0}},
                                           RecordRow{"DisplayRemote", 0x03, {0, 0x010C, 0, 0, 0}},
                                           RecordRow{"Extended", 0x04, {0, 0, 0x010C, 0, 0}},
                                           RecordRow{"Sports", 0x09, {0, 0, 0, 0x010C, 0}},
                                           RecordRow{"Storage", 0x0C, {0, 0, 0, 0, 0x010C}},
                                           RecordRow{"DigitalAudioIsNone", 0x0A, {0, 0, 0, 0, 0}}),
                         test::RowName());

// One question is enough for the operations that need a General version.
TEST_F(LingoVersion, OpensThePreferences) {
  unsigned char setting = 0;
  EXPECT_EQ(session_.Command_GetPreference(0, &setting), 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
  CIpodCommPeer::Responses(session_).Append(test::Packet("FF 55 05 00 10 00 01 05 E5"));
  EXPECT_EQ(Ask(0), 1);
  DrainSent();
  session_.Command_GetPreference(0, &setting);
  EXPECT_FALSE(DrainSent().empty());
}

}  // namespace
