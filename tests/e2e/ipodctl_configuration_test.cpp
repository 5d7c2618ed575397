// SPDX-License-Identifier: MIT
// What ipodctl is told otherwise than by its arguments: the environment, the configuration file,
// and standard input and output in the place of files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "docked_ipod.h"
#include "support/temporary_folder.h"

using e2e::DockedIpod;
using test::Ended;
using test::Ipodctl;
using test::RunProgram;
using test::TemporaryFolder;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

// Runs ipodctl in a shell, with a configuration file of this content.
Ended Configured(const TemporaryFolder& folder, const std::string& content,
                 const std::string& arguments, const std::string& variables = "") {
  folder.Write("ipodctl.toml", content);
  return RunProgram("/bin/sh", {"-c", "XDG_CONFIG_HOME='" + folder.path("") + "' " + variables +
                                          " exec '" IPODCTL_PROGRAM "' " + arguments});
}

void ExpectFound(const Ended& ended, const DockedIpod& dock) {
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, HasSubstr("Zoë's iPod on " + dock.device() + "\n"));
}

TEST(IpodctlConfiguration, NamesThePortUnlessTheEnvironmentOrAnArgumentDoes) {
  const TemporaryFolder folder;
  const DockedIpod dock;
  const std::string here = "port = \"" + dock.device() + "\"  # the dock\n";
  const std::string nowhere = "port = \"/dev/none\"\n";
  ExpectFound(Configured(folder, here, "info"), dock);
  ExpectFound(Configured(folder, nowhere, "info", "IPODCTL_PORT=" + dock.device()), dock);
  ExpectFound(
      Configured(folder, nowhere, "--port " + dock.device() + " info", "IPODCTL_PORT=/dev/none"),
      dock);
}

TEST(IpodctlConfiguration, LeavesSimulatedIpodsAlone) {
  const TemporaryFolder folder;
  const std::string nowhere = "port = \"/dev/none\"\n";
  EXPECT_EQ(Configured(folder, nowhere, "--simulated info", "IPODCTL_PORT=/dev/none").status, 0);
  EXPECT_EQ(Configured(folder, nowhere, "tour").status, 0);
}

TEST(IpodctlConfiguration, GivesACommandItsOptions) {
  const TemporaryFolder folder;
  const DockedIpod dock;
  const Ended ended =
      Configured(folder,
                 "[workout]\nequipment = bike\nweight = 82.5\n"
                 "manufacturer = \"The Gym\"\n[report]\nunits = imperial\n",
                 "--port " + dock.device() + " workout --duration 5 --speed 100 --weight 68");
  EXPECT_EQ(ended.status, 0) << ended.err;
  dock.server().Inspect([](const ipodsim::SimulatedIpod& ipod) {
    const std::string file = ipod.feature_files().Read("gym-0001.xml");
    EXPECT_THAT(file, HasSubstr("<manufacturerName>The Gym</manufacturerName>"));
    EXPECT_THAT(file, HasSubstr("<type>Bike</type>"));
    EXPECT_THAT(file, HasSubstr("<kg>68.0</kg>"));
  });
}

TEST(IpodctlConfiguration, RefusesABrokenFileByItsLine) {
  const TemporaryFolder folder;
  const auto refuse = [&folder](const std::string& content, const std::string& problem) {
    const Ended ended = Configured(folder, content, "--simulated info");
    EXPECT_EQ(ended.status, 64);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, StartsWith("ipodctl: " + folder.path("") + "/ipodctl.toml, line "));
    EXPECT_THAT(ended.err, HasSubstr(problem + "; see 'ipodctl info --help'.\n"));
  };
  refuse("# mine\n\nprot = \"/dev/x\"\n", "line 3: there is no option 'prot'");
  refuse("port /dev/x\n",
         "line 1: 'port /dev/x' is neither a command in brackets nor an option, = "
         "and its value");
  refuse("[worcout]\nweight = 80\n", "line 1: there is no command 'worcout'");
  refuse("timeout = soon\n", "line 1: --timeout: 'soon' is not a number from 0.1 to 86400");
}

TEST(IpodctlTimeout, EndsACommandAsCtrlCDoes) {
  ipodsim::Settings settings;
  settings.library = e2e::NumberedTracks(900);
  settings.profile = ipodsim::Profile::kNano;
  const DockedIpod dock(settings);
  const Ended ended = dock.Ipodctl({"--timeout", "0.1", "browse", "tracks"});
  EXPECT_EQ(ended.status, 130);
  EXPECT_EQ(ended.err, "ipodctl: not done within 0.1 seconds.\n");
}

// A workout that somebody has kept, and the page that a file gets.
struct KeptWorkout {
  TemporaryFolder folder;
  std::string document;

  KeptWorkout() {
    const Ended ended = Ipodctl({"--simulated", "--storage", folder.path("files"), "workout",
                                 "--duration", "5", "--speed", "100"});
    EXPECT_EQ(ended.status, 0) << ended.err;
    document = folder.path("files/gym-0001.xml");
  }
};

TEST(IpodctlReport, GoesFromStandardInputToStandardOutput) {
  const KeptWorkout kept;
  const std::string program = "exec '" IPODCTL_PROGRAM "' ";
  const Ended piped = RunProgram("/bin/sh", {"-c", program + "report - <" + kept.document});
  EXPECT_EQ(piped.status, 0) << piped.err;
  EXPECT_THAT(piped.out, StartsWith("<!DOCTYPE html>"));
  EXPECT_THAT(piped.out, EndsWith("</html>\n"));
  EXPECT_EQ(piped.err, "");

  const std::string page = kept.folder.path("page.html");
  const Ended to_file =
      RunProgram("/bin/sh", {"-c", program + "report - -o " + page + " <" + kept.document});
  EXPECT_THAT(to_file.out, StartsWith("Wrote " + page + ": "));
  EXPECT_TRUE(std::filesystem::exists(page));
  EXPECT_THAT(Ipodctl({"report", kept.document, "-o", "-"}).out, StartsWith("<!DOCTYPE html>"));
  EXPECT_FALSE(std::filesystem::exists("-"));

  const Ended nothing = RunProgram("/bin/sh", {"-c", program + "report - </dev/null"});
  EXPECT_EQ(nothing.status, 66);
  EXPECT_EQ(nothing.err, "ipodctl: standard input is not a workout document: it is empty.\n");
  EXPECT_EQ(Ipodctl({"report", kept.document, "-o", "-", "--json"}).status, 64);
}

TEST(IpodctlPrefs, SaysHowLongASettingHolds) {
  const DockedIpod dock;
  const Ended ended = dock.Ipodctl({"prefs", "set", "line-out", "off"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out,
            "line-out: off\n"
            "It holds until the iPod is undocked or the next command, which sets it to on.\n");
  EXPECT_EQ(dock.Ipodctl({"prefs", "get", "line-out"}).out, "line-out: on\n");
  EXPECT_EQ(dock.Ipodctl({"prefs", "set", "captions", "on"}).out, "captions: on\n");
}

TEST(IpodctlPrefs, KeepsASettingForAfterUndocking) {
  const DockedIpod dock;
  const Ended ended = dock.Ipodctl({"prefs", "set", "captions", "on", "--keep"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "captions: on\n");
  EXPECT_EQ(dock.mistakes(), "");
  const Ended legacy =
      Ipodctl({"--simulated", "--legacy", "prefs", "set", "captions", "on", "--keep"});
  EXPECT_EQ(legacy.status, 64);
}

}  // namespace
