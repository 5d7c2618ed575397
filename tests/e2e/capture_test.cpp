// SPDX-License-Identifier: MIT
// Recordings of whole sessions, by ipodctl and by ipodsim.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "support/pcapng_reader.h"
#include "support/process.h"
#include "support/temporary_folder.h"

using test::Ended;
using test::Ipodctl;
using test::Process;
using test::ReadPcapng;
using test::ReadPcapngFile;
using test::ReadRecording;
using test::TemporaryFolder;
using ::testing::AllOf;
using ::testing::HasSubstr;

namespace {

test::Bytes BytesOf(const std::string& text) { return {text.begin(), text.end()}; }

// Whether the recording was closed: its last packet says so.
bool IsClosed(const ReadRecording& recording) {
  return !recording.packets.empty() && recording.packets.back().event == 6;
}

// What was printed, but for the name of the simulated iPod's line, which is another one in every
// run, and the time.
std::string WithoutWhatDiffers(const std::string& printed) {
  return std::regex_replace(printed, std::regex("/dev/pts/[0-9]+|\"time\":\"[^\"]*\""), "...");
}

TEST(IpodctlCapture, RecordsTheLineBesideWhatTheCommandDoes) {
  const TemporaryFolder folder;
  const Ended plain = Ipodctl({"--simulated", "info", "--json"});
  const Ended recorded =
      Ipodctl({"--simulated", "--capture", folder.path("line.pcapng"), "info", "--json"});
  EXPECT_EQ(recorded.status, 0) << recorded.err;
  EXPECT_EQ(recorded.err, "");
  EXPECT_EQ(WithoutWhatDiffers(recorded.out), WithoutWhatDiffers(plain.out));
  const ReadRecording recording = ReadPcapngFile(folder.path("line.pcapng"));
  EXPECT_TRUE(IsClosed(recording));
  // What the iPod calls itself, as it came over the line.
  const test::Bytes received = recording.BytesOf(2);
  EXPECT_THAT(std::string(received.begin(), received.end()), HasSubstr("Zoë’s iPod"));
}

TEST(IpodctlCapture, OnStandardOutputMovesTheCommandsTextAside) {
  const Ended ended = Ipodctl({"--simulated", "--capture", "-", "info"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_TRUE(IsClosed(ReadPcapng(BytesOf(ended.out))));
  EXPECT_THAT(ended.err, AllOf(HasSubstr("Model"), HasSubstr("MB598LL")));
}

TEST(IpodctlCapture, OnStandardOutputIsAskedForByTheVariableToo) {
  std::vector<std::string> arguments = {"IPODCOMM_CAPTURE=-", IPODCTL_PROGRAM, "--simulated",
                                        "info"};
  for (const char* more : {"--json", "-v"}) {
    arguments.emplace_back(more);
    const Ended ended = test::RunProgram("/usr/bin/env", arguments);
    EXPECT_EQ(ended.status, 0);
    EXPECT_TRUE(IsClosed(ReadPcapng(BytesOf(ended.out))));
    EXPECT_THAT(ended.err, HasSubstr("MB598LL"));
  }
}

TEST(IpodctlCapture, IsReadWithProgressOnATerminalWhenItIsLarge) {
  const TemporaryFolder folder;
  Ipodctl({"--simulated", "--capture", folder.path("line.pcapng"), "info"});
  // Recordings put one behind the other are one of several sections.
  const test::Bytes recorded = test::ReadWholeFile(folder.path("line.pcapng"));
  const std::string section(recorded.begin(), recorded.end());
  std::string large;
  while (large.size() < (2U << 20U)) large += section;
  std::ofstream(folder.path("large.pcapng"), std::ios::binary) << large;
  for (const char* command : {"decode", "explain"}) {
    Process on_terminal(IPODCTL_PROGRAM, {command, folder.path("large.pcapng")},
                        Process::Setting::kErrorsOnTerminal);
    const Ended seen = on_terminal.Wait();
    EXPECT_EQ(seen.status, 0) << command;
    EXPECT_THAT(seen.err, HasSubstr("\rReading  ")) << command;
    EXPECT_THAT(seen.err, HasSubstr("2/2")) << command;
    const Ended piped = Ipodctl({command, folder.path("large.pcapng")});
    EXPECT_EQ(piped.err, "") << command;
    EXPECT_EQ(piped.out, seen.out) << command;
  }
}

TEST(IpodctlCapture, IntoAPipeIsReadToItsEnd) {
  const TemporaryFolder folder;
  ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
  Process monitor(IPODCTL_PROGRAM, {"monitor", "--capture-from", folder.path("pipe")});
  EXPECT_EQ(Ipodctl({"--simulated", "--capture", folder.path("pipe"), "info"}).status, 0);
  const Ended ended = monitor.Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, AllOf(HasSubstr(" > General StartIDPS\n"),
                               HasSubstr("lingo Storage, version 1.02\n")));
}

TEST(IpodctlCapture, ThatCannotBeMadeIsSaidBeforeAnythingIsDone) {
  const Ended ended = Ipodctl({"--simulated", "--capture", "/nowhere/line.pcapng", "info"});
  EXPECT_EQ(ended.status, 73);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err,
            "ipodctl: cannot record to /nowhere/line.pcapng: No such file or directory.\n");
}

TEST(IpodctlCapture, OnStandardOutputIsAloneThereAlsoWithWrongArguments) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--capture", "-"}, {"--capture=-"}}) {
    std::vector<std::string> arguments = {"--json", "dance"};
    arguments.insert(arguments.begin(), words.begin(), words.end());
    const Ended ended = Ipodctl(arguments);
    EXPECT_EQ(ended.status, 64);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, AllOf(HasSubstr("ipodctl: there is no command 'dance'"),
                                 HasSubstr("\"error\":\"usage\"")));
  }
  EXPECT_THAT(Ipodctl({"--json", "--capture", "x.pcapng", "dance"}).out,
              HasSubstr("\"error\":\"usage\""));
}

TEST(IpodctlCapture, OnAFullDiskEndsAndTheCommandDoesNot) {
  const Ended ended = Ipodctl({"--simulated", "--capture", "/dev/full", "info"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "ipodcomm: the recording /dev/full ends here: No space left on device\n");
  EXPECT_THAT(ended.out, HasSubstr("MB598LL"));
}

// The lines of a text that tell of frames.
std::string FrameLines(const std::string& text) {
  std::string lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    if (line.find(" > ") == 16 || line.find(" < ") == 16) lines += line + "\n";
  }
  return lines;
}

TEST(IpodctlVerbose, TellsTheFramesAsTheyGoAndRecordsThemToo) {
  const TemporaryFolder folder;
  const Ended verbose =
      Ipodctl({"--simulated", "-v", "--capture", folder.path("line.pcapng"), "info"});
  EXPECT_EQ(verbose.status, 0);
  EXPECT_THAT(verbose.out, HasSubstr("MB598LL"));
  const Ended decoded = Ipodctl({"decode", folder.path("line.pcapng")});
  EXPECT_EQ(decoded.status, 0) << decoded.err;
  EXPECT_THAT(decoded.out, HasSubstr(" > General StartIDPS\n"));
  EXPECT_EQ(FrameLines(verbose.err), decoded.out);
}

TEST(IpodctlVerbose, TellsTheFramesWithoutARecordingToo) {
  const Ended verbose = Ipodctl({"--simulated", "-v", "info", "--json"});
  EXPECT_EQ(verbose.status, 0);
  EXPECT_THAT(verbose.err,
              AllOf(HasSubstr(" > General StartIDPS\n"), HasSubstr("Storage, version 1.02\n")));
}

// The library looks for it again for each thing that the accessory tells.
TEST(IpodctlVerbose, SaysOnceThatTheHostHasNoVersion) {
  const std::string told = Ipodctl({"--simulated", "-v", "info"}).err;
  const std::size_t first = told.find("Failed to extract file version from qz104.exe!\r\n");
  ASSERT_NE(first, std::string::npos) << told;
  EXPECT_EQ(told.find("Failed to extract", first + 1), std::string::npos) << told;
}

TEST(IpodsimCapture, AgreesWithTheHostsRecordingInEveryByte) {
  const TemporaryFolder folder;
  Process ipodsim(IPODSIM_PROGRAM,
                  {"--link", folder.path("ipod"), "--capture", folder.path("ipod.pcapng")});
  ASSERT_TRUE(ipodsim.WaitForOutput("serving"));
  const Ended ended = Ipodctl({"--port", folder.path("ipod"), "--conduct", "fast", "--capture",
                               folder.path("host.pcapng"), "browse", "artists"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  ipodsim.Signal(SIGINT);
  EXPECT_EQ(ipodsim.Wait().status, 0);
  const ReadRecording host = ReadPcapngFile(folder.path("host.pcapng"));
  const ReadRecording ipod = ReadPcapngFile(folder.path("ipod.pcapng"));
  EXPECT_TRUE(IsClosed(host));
  EXPECT_TRUE(IsClosed(ipod));
  for (const unsigned event : {1U, 2U}) {
    EXPECT_GT(host.BytesOf(event).size(), 100U);
    EXPECT_EQ(host.BytesOf(event), ipod.BytesOf(event));
  }
}

TEST(IpodsimCapture, ThatCannotBeMadeIsSaid) {
  const Ended ended = test::RunProgram(IPODSIM_PROGRAM, {"--capture", "/nowhere/ipod.pcapng"});
  EXPECT_EQ(ended.status, 73);
  EXPECT_EQ(ended.err,
            "ipodsim: cannot record to /nowhere/ipod.pcapng: No such file or directory\n");
}

}  // namespace
