// SPDX-License-Identifier: MIT
// A port that is recorded because IPODCOMM_CAPTURE asks for it.
#include "platform/capture/port_recorder.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "support/pcapng_reader.h"
#include "world.h"

namespace test {
namespace {

using ipodcomm::capture::LineTap;
using ipodcomm::capture::Recording;
using ipodcomm::platform::LineErrors;
using ipodcomm::platform::LineStatus;
using ipodcomm::platform::PortRecorder;
using ::testing::ElementsAre;

class PortRecording : public ::testing::Test {
 protected:
  PortRecording() { setenv("IPODCOMM_CAPTURE", FileOfTest().c_str(), 1); }
  ~PortRecording() override { unsetenv("IPODCOMM_CAPTURE"); }

  // Every test has a file of its own: a process goes on in the file that it began.
  static std::string FileOfTest() {
    return std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) + ".pcapng";
  }

  static HANDLE Open() {
    return CreateFileW(ipodcomm::test::World::kPort, GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                       OPEN_EXISTING, 0, nullptr);
  }
  static void Write(HANDLE port, const Bytes& bytes) {
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(port, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
  }
  static void Read(HANDLE port, DWORD count) {
    Bytes buffer(count);
    DWORD received = 0;
    EXPECT_TRUE(ReadFile(port, buffer.data(), count, &received, nullptr));
    EXPECT_EQ(received, count);
  }
  // The writer is a thread: waits until the recording has its end, and shows what there is when
  // that never comes.
  static ReadRecording ReadClosed(std::size_t ends = 1) {
    const auto given_up = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    for (;;) {
      const ReadRecording recording = ReadPcapngFile(FileOfTest());
      std::size_t found = 0;
      for (const auto& packet : recording.packets) found += packet.event == 6 ? 1 : 0;
      if (found == ends) return recording;
      if (std::chrono::steady_clock::now() > given_up) {
        ADD_FAILURE() << found << " ends of " << ends << ": "
                      << ::testing::PrintToString(recording.Lines());
        return recording;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

  ipodcomm::test::World world_;
};

TEST_F(PortRecording, HoldsWhatWentOverTheLineBothWays) {
  const HANDLE port = Open();
  ASSERT_NE(port, INVALID_HANDLE_VALUE);
  Write(port, Hex("FF"));
  Write(port, Hex("55 02 00 13 EB"));
  world_.Receive(6);
  world_.Send(Hex("FF 55 02 00 27 D7"));
  Read(port, 6);
  EXPECT_TRUE(CloseHandle(port));
  const ReadRecording recording = ReadClosed();
  EXPECT_THAT(recording.Lines(),
              ElementsAre("> FF 55 02 00 13 EB", "< FF 55 02 00 27 D7", "event 6"));
  ASSERT_EQ(recording.interfaces.size(), 1U);
  EXPECT_EQ(recording.interfaces[0].name, std::getenv("IPODCOMM_COM2"));
  EXPECT_LT(recording.packets[0].time_ns, recording.packets[1].time_ns);
}

TEST_F(PortRecording, TellsTheSettingsOfTheLine) {
  const HANDLE port = Open();
  DCB settings = {};
  EXPECT_TRUE(GetCommState(port, &settings));
  settings.BaudRate = 57600;
  settings.StopBits = ONE5STOPBITS;
  EXPECT_TRUE(SetCommState(port, &settings));
  EXPECT_TRUE(CloseHandle(port));
  const ReadRecording recording = ReadClosed();
  ASSERT_EQ(recording.interfaces.size(), 2U);
  EXPECT_EQ(recording.interfaces[0].description, "9600 baud, 8 data bits, no parity, 1 stop bits");
  EXPECT_EQ(recording.interfaces[1].description,
            "57600 baud, 8 data bits, no parity, 1.5 stop bits");
  EXPECT_EQ(recording.interfaces[1].speed, 57600U);
}

TEST_F(PortRecording, GoesOnWhenThePortIsOpenedAgain) {
  for (int i = 0; i < 2; ++i) {
    const HANDLE port = Open();
    Write(port, Hex("FF 55 02 00 13 EB"));
    world_.Receive(6);
    EXPECT_TRUE(CloseHandle(port));
  }
  EXPECT_THAT(ReadClosed(2).Lines(),
              ElementsAre("> FF 55 02 00 13 EB", "event 6", "> FF 55 02 00 13 EB", "event 6"));
}

TEST_F(PortRecording, TellsOnceThatTheLineHasGone) {
  const HANDLE port = Open();
  world_.Unplug();
  Bytes buffer(1);
  DWORD count = 0;
  for (int i = 0; i < 2; ++i) EXPECT_FALSE(ReadFile(port, buffer.data(), 1, &count, nullptr));
  EXPECT_FALSE(WriteFile(port, buffer.data(), 1, &count, nullptr));
  EXPECT_TRUE(CloseHandle(port));
  const ReadRecording recording = ReadClosed();
  EXPECT_THAT(recording.Lines(), ElementsAre("event 0", "event 6"));
  EXPECT_THAT(recording.packets[0].comments, ElementsAre("the line is gone: hung up"));
}

TEST_F(PortRecording, ThatCannotBeMadeLeavesThePortAsItIs) {
  setenv("IPODCOMM_CAPTURE", "/nowhere/line.pcapng", 1);
  testing::internal::CaptureStderr();
  const HANDLE port = Open();
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ipodcomm: nothing is recorded, /nowhere/line.pcapng: No such file or directory\n");
  ASSERT_NE(port, INVALID_HANDLE_VALUE);
  Write(port, Hex("01"));
  EXPECT_EQ(ToHex(world_.Receive(1)), "01");
  EXPECT_TRUE(CloseHandle(port));
}

TEST_F(PortRecording, IsNotMadeUnlessAskedFor) {
  setenv("IPODCOMM_CAPTURE", "", 1);
  const HANDLE port = Open();
  ASSERT_NE(port, INVALID_HANDLE_VALUE);
  Write(port, Hex("01"));
  world_.Receive(1);
  EXPECT_TRUE(CloseHandle(port));
  EXPECT_NE(access(FileOfTest().c_str(), F_OK), 0);
}

TEST_F(PortRecording, OfAProcessThatIsKilledHasNoEnd) {
  const pid_t child = fork();
  if (child == 0) {
    const HANDLE port = Open();
    Write(port, Hex("FF 55 02 00 13 EB"));
    for (;;) pause();
  }
  while (access(FileOfTest().c_str(), F_OK) != 0 || ReadPcapngFile(FileOfTest()).packets.empty()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_THAT(ReadPcapngFile(FileOfTest()).Lines(), ElementsAre("> FF 55 02 00 13 EB"));
}

// A serial driver that counts what a pseudo-terminal has none of.
struct ScriptedStatus : LineStatus {
  bool GetErrors(LineErrors* errors) override {
    ++asked_for_errors;
    *errors = counts;
    return tells;
  }
  bool GetControlLines(std::uint8_t* lines) override {
    ++asked_for_lines;
    *lines = control_lines;
    return tells;
  }

  bool tells = true;
  LineErrors counts;
  std::uint8_t control_lines = 0;
  int asked_for_errors = 0;
  int asked_for_lines = 0;
};

class DriverStatus : public PortRecording {
 protected:
  void Begin(bool tells) {
    auto status = std::make_unique<ScriptedStatus>();
    status_ = status.get();
    status_->tells = tells;
    status_->counts.framing = 7;  // what happened before is not this session's
    std::string error;
    recorder_ = std::make_unique<PortRecorder>(
        std::make_unique<LineTap>(Recording::Start(FileOfTest(), &error), "line"),
        std::move(status));
    DCB settings = {};
    settings.BaudRate = 57600;
    recorder_->Configured(settings);
  }
  void Receive(std::string_view hex) {
    const Bytes bytes = Hex(hex);
    recorder_->Received(bytes.data(), bytes.size());
  }
  ReadRecording CloseAndRead() {
    recorder_.reset();
    return ReadPcapngFile(FileOfTest());
  }

  ScriptedStatus* status_ = nullptr;
  std::unique_ptr<PortRecorder> recorder_;
};

TEST_F(DriverStatus, ErrorsOfTheLineAreRecordedAsTheyAreCounted) {
  Begin(true);
  Receive("FF 55 02 00 13 EB");
  status_->counts.framing = 8;
  Receive("01");
  status_->counts.parity = 1;
  Receive("02");
  status_->counts.breaks = 3;
  Receive("03");
  status_->counts.overflows = 1;
  Receive("FF 55 02 00 13 EB");
  EXPECT_THAT(CloseAndRead().Lines(),
              ElementsAre("< FF 55 02 00 13 EB", "event 7", "event 8", "event 9", "event 10",
                          "< 01 02 03", "< FF 55 02 00 13 EB", "event 6"));
}

TEST_F(DriverStatus, PacketsTellTheControlLines) {
  Begin(true);
  status_->control_lines = 0x19;
  Receive("FF 55 02 00 13 EB");
  EXPECT_EQ(CloseAndRead().packets[0].control_lines, 0x19U);
}

TEST_F(DriverStatus, ADriverThatTellsNothingIsNotAskedAgain) {
  Begin(false);
  Receive("01");
  Receive("02");
  EXPECT_EQ(status_->asked_for_errors, 1);
  EXPECT_EQ(status_->asked_for_lines, 1);
  EXPECT_THAT(CloseAndRead().Lines(), ElementsAre("< 01 02", "event 6"));
}

}  // namespace
}  // namespace test
