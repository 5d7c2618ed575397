// SPDX-License-Identifier: MIT
// What Wireshark learns when it asks ipodctl for its interfaces; the recording itself is in
// tests/e2e/.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/process.h"
#include "support/temporary_folder.h"

using test::Ended;
using test::Ipodctl;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

TEST(Extcap, ListsADockARecordingAndTheSimulatedIpod) {
  const Ended ended = Ipodctl({"--extcap-interfaces", "--extcap-version=4.0"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "");
  EXPECT_THAT(ended.out, StartsWith("extcap {version="));
  const std::string behind_version = ended.out.substr(ended.out.find('\n') + 1);
  EXPECT_EQ(behind_version,
            "interface {value=ipod-dock}{display=iPod in a dock}\n"
            "interface {value=ipod-recording}{display=iPod session of another program}\n"
            "interface {value=ipod-simulated}{display=Simulated iPod}\n");
}

TEST(Extcap, SaysThatPacketsAreOfASerialLine) {
  const Ended ended = Ipodctl({"--extcap-dlts", "--extcap-interface", "ipod-dock"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.out, "dlt {number=250}{name=RTAC_SERIAL}{display=Serial line with an iPod}\n");
}

TEST(Extcap, SaysWhatPeopleMayChoose) {
  EXPECT_EQ(Ipodctl({"--extcap-config", "--extcap-interface", "ipod-recording"}).out,
            "arg {number=0}{call=--recording}{display=Its recording}{tooltip=What "
            "IPODCOMM_CAPTURE=FILE or --capture FILE makes there}{type=fileselect}"
            "{required=true}\n");
  EXPECT_THAT(Ipodctl({"--extcap-config", "--extcap-interface", "ipod-simulated"}).out,
              AllOf(StartsWith("arg {number=0}{call=--profile}{display=Kind of iPod}"),
                    HasSubstr("\nvalue {arg=0}{value=nano}{display=nano}{default=true}\n"),
                    HasSubstr("\nvalue {arg=0}{value=silent}{display=silent}\n"),
                    HasSubstr("\nvalue {arg=1}{value=tour}{display=The tour: identify, browse, "
                              "play}{default=true}\n")));
}

TEST(Extcap, RefusesCaptureFiltersRatherThanIgnoreThem) {
  const std::string sentence =
      "ipodctl: there are no capture filters for this line; record all of it, and choose by a "
      "display filter such as ipodcomm.lingo == 4.\n";
  const Ended asked =
      Ipodctl({"--extcap-interface", "ipod-simulated", "--extcap-capture-filter", "port 5"});
  EXPECT_EQ(asked.status, 64);
  EXPECT_EQ(asked.err, sentence);
  const Ended recorded = Ipodctl({"--extcap-interface", "ipod-simulated", "--capture", "--fifo",
                                  "/dev/null", "--extcap-capture-filter", "port 5"});
  EXPECT_EQ(recorded.status, 64);
  EXPECT_EQ(recorded.err, sentence);
  EXPECT_EQ(Ipodctl({"--extcap-interface", "ipod-simulated", "--extcap-capture-filter", ""}).status,
            0);
}

TEST(Extcap, SaysWhatIsWrongWithAQuestion) {
  const auto sentence = [](const std::vector<std::string>& arguments) {
    const Ended ended = Ipodctl(arguments);
    EXPECT_EQ(ended.status, 64);
    EXPECT_EQ(ended.out, "");
    return ended.err;
  };
  EXPECT_EQ(sentence({"--extcap-interface", "ipod-x", "--extcap-dlts"}),
            "ipodctl: there is no interface 'ipod-x'; 'ipodctl --extcap-interfaces' lists them.\n");
  EXPECT_EQ(sentence({"--extcap-interface", "ipod-dock"}),
            "ipodctl: nothing is asked of ipod-dock: --extcap-dlts, --extcap-config or --capture "
            "--fifo FILE.\n");
  EXPECT_EQ(sentence({"--extcap-interface", "ipod-dock", "--capture"}),
            "ipodctl: --fifo is missing: where to record to.\n");
  EXPECT_EQ(sentence({"--extcap-interface", "ipod-recording", "--capture", "--fifo", "/dev/null"}),
            "ipodctl: --recording is missing: What IPODCOMM_CAPTURE=FILE or --capture FILE makes "
            "there.\n");
  EXPECT_EQ(sentence({"--extcap-interface", "ipod-dock", "--capture", "--fifo", "/dev/null",
                      "--command", "sing"}),
            "ipodctl: --command cannot be 'sing'.\n");
  EXPECT_EQ(sentence({"--extcap-interface", "ipod-dock", "--capture", "--fifo", "/dev/null",
                      "--prot", "/dev/ttyS0"}),
            "ipodctl: ipod-dock has no choice --prot.\n");
}

TEST(Extcap, SaysWhatIsWrongWithARecording) {
  const test::TemporaryFolder folder;
  const auto follow = [&](const std::string& file) {
    return Ipodctl({"--extcap-interface", "ipod-recording", "--capture", "--fifo",
                    folder.path("pipe"), "--recording", file});
  };
  const std::string text = folder.Write("notes.txt", "This is no recording of any line.");
  const Ended no_recording = follow(text);
  EXPECT_EQ(no_recording.status, 66);
  EXPECT_EQ(no_recording.err, "ipodctl: " + text + " is no recording.\n");
  const std::string word = folder.Write("word.txt", "Ha");
  const Ended short_text = follow(word);
  EXPECT_EQ(short_text.status, 66);
  EXPECT_EQ(short_text.err, "ipodctl: " + word + " is no recording.\n");
  const Ended no_file = follow("/dev/null");
  EXPECT_EQ(no_file.status, 66);
  EXPECT_EQ(no_file.err,
            "ipodctl: /dev/null is no file; name the one that the session is being recorded in.\n");
  const Ended no_pipe = Ipodctl({"--extcap-interface", "ipod-recording", "--capture", "--fifo",
                                 "/nowhere/pipe", "--recording", text});
  EXPECT_EQ(no_pipe.status, 73);
  EXPECT_EQ(no_pipe.err, "ipodctl: cannot record to /nowhere/pipe: No such file or directory.\n");
}

}  // namespace
