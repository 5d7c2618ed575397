// SPDX-License-Identifier: MIT
// ipodctl ports and --port auto, where pseudo-terminals play the system's serial adapters.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "docked_ipod.h"
#include "support/json_lines.h"
#include "support/temporary_folder.h"

using e2e::DockedIpod;
using e2e::SettingsOf;
using ipodsim::Profile;
using nlohmann::json;
using test::Ended;
using test::Ipodctl;
using test::Objects;
using test::Process;
using test::TemporaryFolder;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

// A system of which the programs know no other ports than those that a test plugs in.
class PluggedSystem {
 public:
  PluggedSystem() { ::setenv("IPODCTL_SYSTEM_ROOT", folder_.path("").c_str(), 1); }
  ~PluggedSystem() { ::unsetenv("IPODCTL_SYSTEM_ROOT"); }
  PluggedSystem(const PluggedSystem&) = delete;
  PluggedSystem& operator=(const PluggedSystem&) = delete;

  /// Plugs in an adapter that is called after its port, with a line to what is docked.
  void Plug(const std::string& port, const std::string& line) const {
    const std::string usb = "sys/devices/usb1/" + port + "-adapter";
    std::filesystem::create_directories(folder_.path(usb + "/interface"));
    std::filesystem::create_directories(folder_.path("sys/class/tty/" + port));
    std::filesystem::create_directories(folder_.path("dev/serial/by-id"));
    folder_.Write(usb + "/idVendor", "0403\n");
    folder_.Write(usb + "/manufacturer", "Serial Works\n");
    folder_.Write(usb + "/product", "Line " + port + "\n");
    folder_.Write(usb + "/serial", "A9007\n");
    const auto link = [this](const std::string& to, const std::string& name) {
      std::filesystem::create_symlink(to, folder_.path(name));
    };
    link(folder_.path(usb + "/interface"), "sys/class/tty/" + port + "/device");
    link("../../" + port, "dev/serial/by-id/usb-" + port);
    link(line, "dev/" + port);
  }

  std::string Device(const std::string& port) const { return folder_.path("") + "/dev/" + port; }

 private:
  TemporaryFolder folder_;
};

// One sentence, and nothing else anywhere.
void ExpectEndWith(const Ended& ended, int status, const std::string& sentence) {
  EXPECT_EQ(ended.status, status);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err, "ipodctl: " + sentence + ".\n");
}

TEST(IpodctlPorts, AreListedWithTheirAdaptersAndNotAsked) {
  const PluggedSystem system;
  const DockedIpod dock;
  system.Plug("ttyUSB0", dock.device());
  const Ended ended = Ipodctl({"ports"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.out, system.Device("ttyUSB0") +
                           "  Serial Works Line ttyUSB0\n  Serial number       A9007\n"
                           "  Lasting name        " +
                           system.Device("serial/by-id/usb-ttyUSB0") + "\n");
  EXPECT_EQ(ended.err, "");
  json object = json::parse(Ipodctl({"ports", "--json"}).out);
  object.erase("time");
  EXPECT_EQ(object, (json{{"port", system.Device("ttyUSB0")},
                          {"adapter", "Serial Works Line ttyUSB0"},
                          {"serial_number", "A9007"},
                          {"link", system.Device("serial/by-id/usb-ttyUSB0")}}));
  dock.server().Inspect(
      [](const ipodsim::SimulatedIpod& ipod) { EXPECT_FALSE(ipod.identified_by_tokens()); });
}

TEST(IpodctlPorts, AreNoneWhereNoAdapterIs) {
  const PluggedSystem system;
  EXPECT_EQ(Ipodctl({"ports"}).out, "There is no serial port; plug in the dock's adapter.\n");
  const Ended machines = Ipodctl({"ports", "--probe", "--json"});
  EXPECT_EQ(machines.status, 0);
  EXPECT_EQ(machines.out, "");
}

TEST(IpodctlPorts, SayWhatAnswersWhenAsked) {
  const PluggedSystem system;
  const DockedIpod docked;
  const DockedIpod silent(SettingsOf(Profile::kSilent));
  const DockedIpod old(SettingsOf(Profile::kOld));
  const DockedIpod echo(SettingsOf(Profile::kEcho));
  const DockedIpod used;
  system.Plug("ttyUSB0", docked.device());
  system.Plug("ttyUSB1", silent.device());
  system.Plug("ttyUSB2", old.device());
  system.Plug("ttyUSB3", echo.device());
  system.Plug("ttyUSB4", used.device());
  system.Plug("ttyUSB5", "/dev/null");
  const auto owner = used.Start({"now", "--follow"});
  ASSERT_TRUE(owner->WaitForOutput("Stopped\n"));
  Process for_people(IPODCTL_PROGRAM, {"ports", "--probe"});
  const Ended people = for_people.Wait();
  EXPECT_EQ(people.status, 0) << people.err;
  for (const char* fact :
       {"In the dock         Zoë's iPod (MB598LL)\n", "In the dock         nothing answers\n",
        "In the dock         an iPod, but this iPod is too old to be controlled (",
        "In the dock         what is sent comes back\n", "In the dock         busy\n"}) {
    EXPECT_THAT(people.out, HasSubstr(fact));
  }
  EXPECT_THAT(people.out, HasSubstr("In the dock         cannot open " + system.Device("ttyUSB5") +
                                    ": it does not work as a serial"));
  const std::vector<json> told = Objects(Ipodctl({"ports", "--probe", "--json"}).out);
  owner->Signal(SIGINT);
  EXPECT_EQ(owner->Wait().status, 0);
  const std::vector<std::string> words = {"ipod", "nothing", "not-accepted",
                                          "echo", "busy",    "unusable"};
  ASSERT_EQ(told.size(), words.size());
  for (std::size_t i = 0; i < words.size(); ++i) EXPECT_EQ(told[i].at("answer"), words[i]);
  EXPECT_EQ(told[0].at("name"), "Zoë's iPod");
  EXPECT_EQ(told[0].at("model"), "MB598LL");
  EXPECT_FALSE(told[1].contains("message"));
  EXPECT_THAT(told[2].at("message"), StartsWith("this iPod is too old to be controlled ("));
  EXPECT_EQ(docked.mistakes(), "");
}

TEST(IpodctlPorts, SayWherePermissionIsMissing) {
  const PluggedSystem system;
  const DockedIpod dock;
  system.Plug("ttyUSB0", dock.device());
  std::filesystem::permissions(dock.device(), std::filesystem::perms::none);
  Process stranger(IPODCTL_PROGRAM, {"ports", "--probe"}, Process::Setting::kBoundByFileModes);
  const Ended ended = stranger.Wait();
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.out, HasSubstr("In the dock         no permission\n"));
}

TEST(IpodctlPorts, AreNotThoseOfASimulatedIpod) {
  ExpectEndWith(Ipodctl({"--simulated", "ports"}), 64,
                "a simulated iPod is on no serial port of this system; leave out --simulated; see "
                "'ipodctl ports --help'");
}

TEST(IpodctlAnyPort, IsTheOnlyOneOrTheOneWhereAnIpodAnswers) {
  const PluggedSystem system;
  const DockedIpod dock;
  system.Plug("ttyUSB1", dock.device());
  EXPECT_THAT(Ipodctl({"--port", "auto", "info"}).out,
              StartsWith("Zoë's iPod on " + system.Device("ttyUSB1") + "\n"));
  const DockedIpod silent(SettingsOf(Profile::kSilent));
  system.Plug("ttyUSB0", silent.device());
  ::setenv("IPODCTL_PORT", "auto", 1);
  const Ended ended = Ipodctl({"--legacy", "info"});
  // What opens no dock asks no port.
  const Ended other = Ipodctl({"explain", "E201"});
  ::unsetenv("IPODCTL_PORT");
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, StartsWith("Zoë's iPod on " + system.Device("ttyUSB1") + "\n"));
  EXPECT_EQ(other.status, 0);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlAnyPort, IsNoneWhereNoneIsOrNoIpodAnswers) {
  const PluggedSystem system;
  ExpectEndWith(
      Ipodctl({"--port", "auto", "info"}), 2,
      "there is no serial port; plug in the dock's adapter, or name its line with --port");
  system.Plug("ttyUSB0", "/dev/null");
  system.Plug("ttyUSB1", "/dev/none");
  const Ended unusable = Ipodctl({"--port", "auto", "info"});
  EXPECT_EQ(unusable.status, 2);
  EXPECT_THAT(unusable.err,
              StartsWith("ipodctl: no iPod answers on any port: " + system.Device("ttyUSB0") +
                         " (cannot open " + system.Device("ttyUSB0") + ": it does not work"));
  const DockedIpod silent(SettingsOf(Profile::kSilent));
  system.Plug("ttyUSB2", silent.device());
  const Ended nothing = Ipodctl({"--port", "auto", "info", "--json"});
  EXPECT_EQ(nothing.status, 3);
  EXPECT_THAT(nothing.err, HasSubstr(system.Device("ttyUSB2") +
                                     " (nothing answers); check that it is docked and switched "
                                     "on, or name its port with --port.\n"));
  EXPECT_EQ(json::parse(nothing.out).at("error"), "nothing-docked");
}

TEST(IpodctlAnyPort, IsNotChosenAmongSeveralIpods) {
  const PluggedSystem system;
  const DockedIpod one;
  const DockedIpod other(SettingsOf(Profile::kClassic));
  system.Plug("ttyUSB0", one.device());
  system.Plug("ttyUSB1", other.device());
  ExpectEndWith(Ipodctl({"--port", "auto", "info"}), 64,
                "an iPod answers on more than one port: " + system.Device("ttyUSB0") +
                    " (Zoë's iPod (MB598LL)), " + system.Device("ttyUSB1") +
                    " (Zoë's iPod (MB029LL)); name one of them with --port");
}

}  // namespace
