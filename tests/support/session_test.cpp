// SPDX-License-Identifier: MIT
#include "support/session_test.h"

#include <cstdlib>

namespace test {

namespace {

// "NAME=value " when the variable is set.
std::string Setting(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : std::string(name) + "=" + value + " ";
}

// Tells worlds about the test that runs, so that a failure prints how to repeat it.
[[maybe_unused]] const bool hooks_set = [] {
  ipodcomm::virtual_platform::SetTestHooks(
      {[] { return ::testing::Test::HasFailure(); },
       [] {
         const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
         return Setting("IPODCOMM_CONDUCT") + Setting("IPODCOMM_DELIVERY") +
                ::testing::internal::GetArgvs().front() +
                " --gtest_filter=" + info->test_suite_name() + "." + info->name();
       }});
  return true;
}();

}  // namespace

DockTest::DockTest() {
  world_.NameRoutine(CIpodSerial::PortReadThread, "read");
  world_.NameRoutine(CIpodComm::ReadPacketThread, "routing");
  world_.NameRoutine(CIpodComm::NotificationThread, "notification");
  world_.line().Plug(ipod_);
  DrainTraceLog();
}

DockTest::~DockTest() { world_.line().Unplug(); }

std::vector<std::string> DockTest::DrainSent() {
  // What was written last may still be on the line.
  world_.Advance(50 * kMillisecond);
  const Bytes sent = ipod_.received();
  ipod_.ClearReceived();
  return Frames(sent);
}

void DockTest::Arrive(std::string_view bytes) {
  // The line needs 0.2 ms per byte, the read thread 2 ms, and the answer to a request 20 ms and
  // more. No delivery makes that 200 ms more.
  const Bytes sent = Hex(bytes);
  ipod_.Send(sent);
  world_.Advance(static_cast<std::int64_t>(sent.size()) * 5 * kMillisecond + 300 * kMillisecond);
}

void DockTest::Answer(std::string_view request, std::string_view reply, std::int64_t delay_us) {
  ipod_.Answer(Hex(request), Hex(reply), delay_us);
}

std::vector<std::string> DockTest::DrainDebugOutput() {
  const std::vector<std::string> all = world_.debug_output();
  const auto taken = static_cast<std::ptrdiff_t>(debug_lines_taken_);
  debug_lines_taken_ = all.size();
  return {all.begin() + taken, all.end()};
}

SessionTest::SessionTest() {
  world_.Advance(2 * kSecond);
  ChooseConduct(session_);
  EXPECT_EQ(session_.Open(), 0);
  DrainSent();
  DrainDebugOutput();
}

void SessionTest::TurnOnTransactionIds(std::uint16_t own) {
  CIpodCommPeer::TransactionIdMode(session_) = 1;
  CIpodCommPeer::OwnTransactionId(session_) = own;
}

}  // namespace test
