// SPDX-License-Identifier: MIT
// The library in this process against a simulated iPod behind a pseudo-terminal: real threads, real
// time, and lines that are not always clean.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "docked_ipod.h"
#include "ipodcomm/CIpodComm.h"

using e2e::DockedIpod;
using e2e::NumberedTracks;
using ipodsim::Fault;
using ipodsim::PlayerState;

namespace {

constexpr unsigned char kTracks = 5;
constexpr unsigned long kStatePositionAndTrackEvents = 0x1F;

// Makes the library's port stand for this dock.
void UsePort(const DockedIpod& dock) { ::setenv("IPODCOMM_COM2", dock.device().c_str(), 1); }

// Opens and identifies by tokens.
tagIPOD_IDENTIFY_RESULT Identify(CIpodComm& ipod) {
  tagIPOD_IDENTIFY_RESULT result = IPOD_IDENTIFY_RESULT_NONE;
  EXPECT_EQ(ipod.Open(), 0);
  ipod.SetModel("e2e");
  ipod.SetIDPSEnable(1);
  ipod.Command_IdentifyDeviceLingos(0, &result, nullptr, nullptr);
  return result;
}

// Identified, in remote user-interface mode, and playing the first track.
void PlayFirstTrack(CIpodComm& ipod) {
  ASSERT_EQ(Identify(ipod), IPOD_IDENTIFY_RESULT_IDPS);
  ASSERT_EQ(ipod.Command_EnterRemoteUIMode(), 1);
  unsigned long count = 0;
  ASSERT_NE(ipod.SelectTop(kTracks, &count, 0), 0);
  ASSERT_GT(count, 0U);
  ASSERT_NE(ipod.Select(kTracks, 0), 0);
}

// Waits for what must come sooner or later; a minute is for ever.
template <typename Condition>
bool Eventually(Condition condition) {
  for (int look = 0; look < 6000; ++look) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

ipodsim::Settings WithTracks(int count) {
  ipodsim::Settings settings;
  // By default the library takes the answer that this is pending for a refusal.
  settings.remote_ui_is_pending_first = false;
  settings.library = NumberedTracks(count);
  return settings;
}

// A session that has used a faulty line goes on to a clean one and must work as if new.
void ExpectToWorkOn(CIpodComm& ipod) {
  ipod.Close();
  const DockedIpod clean(WithTracks(3));
  UsePort(clean);
  EXPECT_EQ(Identify(ipod), IPOD_IDENTIFY_RESULT_IDPS);
  wchar_t name[256] = {};
  EXPECT_EQ(ipod.Command_RequestIpodName(name, 256), 1);
  EXPECT_STREQ(name, L"Numbers");
  ipod.Close();
  EXPECT_EQ(clean.mistakes(), "");
}

TEST(SessionOverTerminal, IdentifiesAndReadsFiftyNamesInOrder) {
  const DockedIpod dock(WithTracks(50));
  UsePort(dock);
  CIpodComm ipod;
  ASSERT_EQ(Identify(ipod), IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_EQ(ipod.SupportsSports(), 1);
  ASSERT_EQ(ipod.Command_EnterRemoteUIMode(), 1);
  unsigned long count = 0;
  ASSERT_NE(ipod.SelectTop(kTracks, &count, 0), 0);
  ASSERT_EQ(count, 50U);
  ipod.Command_RetrieveCategorizedDatabaseRecords(0, count, 255);
  for (int i = 0; i < 50; ++i) {
    wchar_t name[64] = {};
    ASSERT_EQ(ipod.GetNextCategorizedRecord(name, 64), 1) << i;
    const std::wstring expected = L"Track 0" + std::to_wstring(i / 10) + std::to_wstring(i % 10);
    EXPECT_EQ(name, expected);
  }
  ipod.Close();
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(SessionOverTerminal, PlaysAndHearsThePositionMove) {
  const DockedIpod dock(WithTracks(3));
  UsePort(dock);
  CIpodComm ipod;
  PlayFirstTrack(ipod);
  EXPECT_EQ(dock.state(), PlayerState::kPlaying);
  EXPECT_EQ(dock.title(), "Track 000");
  ASSERT_EQ(ipod.SetNotification(kStatePositionAndTrackEvents), 1);
  tagIPOD_PLAY_STATUS status = {};
  EXPECT_TRUE(Eventually([&] {
    ipod.GetPlayStatus(&status);
    return status.position >= 2;
  }));
  EXPECT_EQ(ipod.Command_PlayControl(11), 1);
  EXPECT_EQ(dock.state(), PlayerState::kPaused);
  EXPECT_TRUE(Eventually([&] {
    ipod.GetPlayStatus(&status);
    return status.state == 2;
  }));
  ipod.Close();
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(SessionOverTerminal, MayBeDestroyedWhileNotificationsStream) {
  ipodsim::Settings settings = WithTracks(3);
  settings.position_period = 60 * ipodsim::kMillisecond;  // about as fast as the line can take
  const DockedIpod dock(settings);
  UsePort(dock);
  {
    auto ipod = std::make_unique<CIpodComm>();
    PlayFirstTrack(*ipod);
    ASSERT_EQ(ipod->SetNotification(kStatePositionAndTrackEvents), 1);
    tagIPOD_PLAY_STATUS status = {};
    EXPECT_TRUE(Eventually([&] {
      ipod->GetPlayStatus(&status);
      return status.tick != 0;
    }));
    ipod.reset();
  }
  CIpodComm next;
  EXPECT_EQ(Identify(next), IPOD_IDENTIFY_RESULT_IDPS);
}

TEST(SessionOverTerminal, MayBeDestroyedAtAnyStageOfItsStart) {
  const DockedIpod dock(WithTracks(3));
  UsePort(dock);
  { CIpodComm never_opened; }
  {
    CIpodComm opened;
    EXPECT_EQ(opened.Open(), 0);
  }
  {
    CIpodComm reopened;
    for (int i = 0; i < 5; ++i) EXPECT_EQ(reopened.Open(), 0);
    reopened.Close();
    EXPECT_EQ(reopened.Open(), 0);
  }
  CIpodComm ipod;
  EXPECT_EQ(Identify(ipod), IPOD_IDENTIFY_RESULT_IDPS);
}

// A copy shares its source's handles: whichever goes first leaves the other with stale ones, whose
// use fails and does nothing worse.
TEST(SessionOverTerminal, ACopyMayOutliveItsSource) {
  const DockedIpod dock(WithTracks(3));
  UsePort(dock);
  auto source = std::make_unique<CIpodComm>();
  ASSERT_EQ(Identify(*source), IPOD_IDENTIFY_RESULT_IDPS);
  CIpodComm copy(*source);
  source.reset();
  wchar_t name[64] = {};
  EXPECT_EQ(copy.Command_RequestIpodName(name, 64), 0);
  copy.Close();
  CIpodComm other;
  other = copy;
  EXPECT_EQ(other.IsOpen(), 0);
}

TEST(SessionOverTerminal, ASourceMayOutliveItsCopy) {
  const DockedIpod dock(WithTracks(3));
  UsePort(dock);
  {
    CIpodComm source;
    ASSERT_EQ(Identify(source), IPOD_IDENTIFY_RESULT_IDPS);
    {
      const CIpodComm copy(source);  // its end closes the port and the events that both share
    }
    wchar_t name[64] = {};
    EXPECT_EQ(source.Command_RequestIpodName(name, 64), 0);
    // Without its events the source looks for answers now and then, so whether it finds this one is
    // a matter of timing; it is to survive.
    EXPECT_EQ(source.Open(), 0);
    static_cast<void>(source.Command_RequestIpodName(name, 64));
  }
  CIpodComm fresh;
  EXPECT_EQ(Identify(fresh), IPOD_IDENTIFY_RESULT_IDPS);
}

// Faults that are switched on together, and the name of the test.
struct BadLine {
  const char* name;
  std::vector<Fault> faults;
};

void PrintTo(const BadLine& line, std::ostream* stream) { *stream << line.name; }

class SessionOnBadLine : public testing::TestWithParam<BadLine> {};

TEST_P(SessionOnBadLine, SurvivesAndWorksAfterwards) {
  ipodsim::Settings settings = WithTracks(3);
  for (const Fault fault : GetParam().faults) settings.faults.Enable(fault);
  settings.faults.one_in = 20;
  std::unique_ptr<CIpodComm> session;
  {
    const DockedIpod dock(settings);
    UsePort(dock);
    session = std::make_unique<CIpodComm>();
    // Whether any of this succeeds is the fault's business; that it ends is the library's.
    Identify(*session);
    wchar_t name[64] = {};
    session->Command_RequestIpodName(name, 64);
    unsigned long count = 0;
    session->SelectTop(kTracks, &count, 0);
    session->Command_RetrieveCategorizedDatabaseRecords(0, 3, kTracks);
    for (int i = 0; i < 3; ++i) session->GetNextCategorizedRecord(name, 64);
  }
  ExpectToWorkOn(*session);
}

INSTANTIATE_TEST_SUITE_P(
    Faults, SessionOnBadLine,
    testing::Values(
        BadLine{"WithDamagedBytes",
                {Fault::kDroppedBytes, Fault::kDoubledBytes, Fault::kFlippedBits}},
        BadLine{"WithJunkBetweenFrames", {Fault::kJunk, Fault::kSplitBytes, Fault::kLateBytes}},
        BadLine{"WithRepliesOfWrongLength", {Fault::kShortReplies, Fault::kLongReplies}},
        BadLine{"WithRequestsAndRefusals",
                {Fault::kUnaskedRequests, Fault::kRefusedCommands, Fault::kPendingAcks}}),
    [](const testing::TestParamInfo<BadLine>& tested) { return tested.param.name; });

TEST(SessionOverTerminal, FailsInTimeWhenTheCableIsPulledAndComesBack) {
  auto dock = std::make_unique<DockedIpod>(WithTracks(3));
  UsePort(*dock);
  CIpodComm ipod;
  ASSERT_EQ(Identify(ipod), IPOD_IDENTIFY_RESULT_IDPS);
  dock.reset();
  wchar_t name[64] = {};
  EXPECT_EQ(ipod.Command_RequestIpodName(name, 64), 0);
  EXPECT_EQ(ipod.Command_EnterRemoteUIMode(), 0);
  ExpectToWorkOn(ipod);
}

}  // namespace
