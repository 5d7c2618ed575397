// SPDX-License-Identifier: MIT
// Wireshark's command-line program records from ipodctl's interfaces, as Wireshark itself does.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/pcapng_reader.h"
#include "support/process.h"
#include "support/temporary_folder.h"
#include "support/tshark.h"

using test::Ended;
using test::Ipodctl;
using test::Process;
using test::ReadPcapng;
using test::ReadPcapngFile;
using test::ReadRecording;
using test::RecordedPacket;
using testing::HasSubstr;

namespace {

// A user's home in which ipodctl is one of Wireshark's extcap programs.
class WithWireshark : public testing::Test {
 protected:
  void SetUp() override {
    test::RequireTshark();
    // The folder's place depends on Wireshark's version.
    for (const char* folder : {".config/wireshark/extcap", ".local/lib/wireshark/extcap"}) {
      std::filesystem::create_directories(home_.path(folder));
      std::filesystem::create_symlink(IPODCTL_PROGRAM, home_.path(folder) + "/ipodctl");
    }
  }

  std::unique_ptr<Process> StartTshark(const std::vector<std::string>& more) const {
    std::vector<std::string> arguments = {
        "-u", "XDG_CONFIG_HOME",      "HOME=" + home_.path(""), test::kTshark,
        "-X", "lua_script:" DISSECTOR};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return std::make_unique<Process>("/usr/bin/env", arguments);
  }

  const test::TemporaryFolder home_;
};

// Whether Wireshark was given what stands in a file, packet by packet.
void ExpectSamePackets(const ReadRecording& shown, const ReadRecording& saved) {
  ASSERT_EQ(shown.packets.size(), saved.packets.size());
  for (std::size_t i = 0; i < saved.packets.size(); ++i) {
    SCOPED_TRACE(i + 1);
    EXPECT_EQ(shown.packets[i].time_ns, saved.packets[i].time_ns);
    EXPECT_EQ(shown.packets[i].header_time_us, saved.packets[i].header_time_us);
    EXPECT_EQ(shown.packets[i].event, saved.packets[i].event);
    EXPECT_EQ(shown.packets[i].bytes, saved.packets[i].bytes);
  }
}

TEST_F(WithWireshark, TheInterfacesAreListed) {
  const Ended ended = StartTshark({"-D"})->Wait();
  EXPECT_THAT(ended.out, HasSubstr("ipod-dock (iPod in a dock)\n"));
  EXPECT_THAT(ended.out, HasSubstr("ipod-recording (iPod session of another program)\n"));
  EXPECT_THAT(ended.out, HasSubstr("ipod-simulated (Simulated iPod)\n"));
}

TEST_F(WithWireshark, ASessionOfAnotherProgramIsWatchedWhileItIsRecorded) {
  const std::string saved = home_.path("saved.pcapng");
  const std::string shown = home_.path("shown.pcapng");
  const auto tshark =
      StartTshark({"-i", "ipod-recording", "-o", "extcap.ipod_recording.recording:" + saved, "-w",
                   shown, "-P", "-l"});
  const Ended session = Ipodctl({"--simulated", "--capture", saved, "info"});
  EXPECT_EQ(session.status, 0) << session.err;
  const ReadRecording recording = ReadPcapngFile(saved);
  EXPECT_GT(recording.packets.size(), 20U);
  // The line is opened twice, so that the last packet is not the first that ends a recording.
  EXPECT_TRUE(tshark->WaitForOutput("\n   " + std::to_string(recording.packets.size()) + " "));
  tshark->Signal(SIGINT);
  const Ended ended = tshark->Wait();
  EXPECT_THAT(ended.out, HasSubstr("General StartIDPS"));
  EXPECT_THAT(ended.out, HasSubstr("End of the recording"));
  ExpectSamePackets(ReadPcapngFile(shown), recording);
}

TEST_F(WithWireshark, ADockIsDrivenAndRecorded) {
  const std::string shown = home_.path("shown.pcapng");
  Process ipodsim(IPODSIM_PROGRAM,
                  {"--link", home_.path("ipod"), "--capture", home_.path("ipod.pcapng")});
  ASSERT_TRUE(ipodsim.WaitForOutput("serving"));
  StartTshark({"-i", "ipod-dock", "-o", "extcap.ipod_dock.port:" + home_.path("ipod"), "-w", shown})
      ->Wait();
  ipodsim.Signal(SIGINT);
  EXPECT_EQ(ipodsim.Wait().status, 0);
  const ReadRecording host = ReadPcapngFile(shown);
  const ReadRecording ipod = ReadPcapngFile(home_.path("ipod.pcapng"));
  ASSERT_FALSE(host.packets.empty());
  EXPECT_EQ(host.packets.back().event, 6U);
  for (const unsigned event : {1U, 2U}) {
    EXPECT_GT(host.BytesOf(event).size(), 100U);
    EXPECT_EQ(host.BytesOf(event), ipod.BytesOf(event));
  }
}

TEST_F(WithWireshark, AFailureIsShown) {
  const Ended ended =
      StartTshark({"-i", "ipod-dock", "-o", "extcap.ipod_dock.port:/nowhere"})->Wait();
  EXPECT_THAT(ended.err, HasSubstr("cannot open /nowhere: there is no such device"));
}

// Wireshark's pipe, without Wireshark.
class Extcap : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(::mkfifo(pipe_.c_str(), 0600), 0); }

  Process Follow() const {
    return {IPODCTL_PROGRAM,
            {"--extcap-interface", "ipod-simulated", "--capture", "--fifo", pipe_, "--command",
             "follow"}};
  }

  // Waits until the program has written something.
  static test::Bytes ReadSome(int reader) {
    test::Bytes bytes(4096);
    const ssize_t count = ::read(reader, bytes.data(), bytes.size());
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
  }

  const test::TemporaryFolder folder_;
  const std::string pipe_ = folder_.path("pipe");
};

TEST_F(Extcap, EndsInGoodOrderWhenItIsAskedTo) {
  Process ipodctl = Follow();
  const int reader = ::open(pipe_.c_str(), O_RDONLY | O_CLOEXEC);
  test::Bytes all = ReadSome(reader);
  EXPECT_FALSE(all.empty());
  ipodctl.Signal(SIGTERM);
  for (test::Bytes more = ReadSome(reader); !more.empty(); more = ReadSome(reader)) {
    all.insert(all.end(), more.begin(), more.end());
  }
  ::close(reader);
  const Ended ended = ipodctl.Wait();
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err, "");
  const ReadRecording recording = ReadPcapng(all);
  ASSERT_FALSE(recording.packets.empty());
  EXPECT_EQ(recording.packets.back().event, 6U);
}

TEST_F(Extcap, EndsInGoodOrderWhenNobodyReadsAnyMore) {
  Process ipodctl = Follow();
  const int reader = ::open(pipe_.c_str(), O_RDONLY | O_CLOEXEC);
  EXPECT_FALSE(ReadSome(reader).empty());
  ::close(reader);
  const Ended ended = ipodctl.Wait();
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "");
}

}  // namespace
