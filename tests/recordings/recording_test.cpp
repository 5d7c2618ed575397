// SPDX-License-Identifier: MIT
// The default conduct, call by call: everything that scenarios ask of the platform, with the times
// and the results, is what it was when the recordings in kept/ were made. README.md tells how they
// are compared and renewed.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>

#include "ipodcomm/CIpodComm.h"
#include "recordings/scenarios.h"
#include "simulator/simulated_ipod.h"
#include "support/bytes.h"
#include "support/trace_log.h"
#include "world/line/scripted_device.h"
#include "world/line/serial_device.h"

namespace {

using ipodcomm::virtual_platform::Call;
using ipodcomm::virtual_platform::ScriptedDevice;
using ipodcomm::virtual_platform::SerialDevice;
using ipodcomm::virtual_platform::World;
using test::Scenario;
using Lines = std::vector<std::string>;

constexpr std::size_t kLinesPerDigest = 50;

bool Asked(const char* variable) { return std::getenv(variable) != nullptr; }

std::string KeptFile(const std::string& name) { return KEPT_RECORDINGS "/" + name; }

Lines ReadLines(const std::string& file) {
  Lines lines;
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

void WriteLines(const std::string& file, const Lines& lines) {
  std::ofstream out(file);
  for (const std::string& line : lines) out << line << '\n';
  ASSERT_TRUE(out.flush()) << file;
}

// ---- The iPod

// Sends what was kept of it, at the times at which it was sent: "2034721 FF 55 ...".
void PlayBack(const Lines& kept, ScriptedDevice* device) {
  for (const std::string& line : kept) {
    const std::size_t space = line.find(' ');
    device->SendAt(std::stoll(line.substr(0, space)), test::Hex(line.substr(space + 1)));
  }
}

// The simulated iPod, of which everything that it sends is noted.
class NotingDevice : public SerialDevice {
 public:
  explicit NotingDevice(const ipodsim::Settings& settings) : ipod_(settings) {}

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override {
    ipod_.Receive(data, size, now_us);
  }
  std::optional<std::int64_t> NextEvent() override { return ipod_.NextEvent(); }
  std::vector<std::uint8_t> Transmit(std::int64_t now_us) override {
    std::vector<std::uint8_t> sent = ipod_.Transmit(now_us);
    if (!sent.empty()) noted_.push_back(std::to_string(now_us) + " " + test::ToHex(sent));
    return sent;
  }
  const Lines& noted() const { return noted_; }

 private:
  ipodsim::SimulatedIpod ipod_;
  Lines noted_;
};

// ---- Recordings

// The calls of each thread in their order: "20000 40000 Sleep(20)".
std::map<std::string, Lines> ByThread(const std::vector<Call>& calls) {
  std::map<std::string, Lines> threads;
  for (const Call& call : calls) {
    std::string line = std::to_string(call.start_us) + " ";
    line += (call.finished ? std::to_string(call.end_us) : "-") + " " + call.text;
    if (!call.result.empty()) line += " = " + call.result;
    threads[call.thread].push_back(line);
  }
  return threads;
}

std::map<std::string, Lines> CallsOf(const Scenario& scenario, SerialDevice& device) {
  World world({1});
  world.NameRoutine(CIpodSerial::PortReadThread, "read");
  world.NameRoutine(CIpodComm::ReadPacketThread, "routing");
  world.NameRoutine(CIpodComm::NotificationThread, "notification");
  world.line().Plug(device);
  world.Record();
  EXPECT_TRUE(scenario.run(world)) << scenario.name;
  world.StopRecording();
  world.line().Unplug();
  test::DrainTraceLog();
  return ByThread(world.DrainCalls().all());
}

// FNV-1a over the lines from `begin` to before `end`, and over their ends.
std::string Digest(const Lines& lines, std::size_t begin, std::size_t end) {
  std::uint64_t digest = 0xCBF29CE484222325;
  const auto add = [&digest](char byte) {
    digest = (digest ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
  };
  for (std::size_t i = begin; i < end; ++i) {
    std::for_each(lines[i].begin(), lines[i].end(), add);
    add('\n');
  }
  std::ostringstream text;
  text << std::hex << digest;
  return text.str();
}

std::size_t BlockEnd(const Lines& lines, std::size_t begin) {
  return std::min(begin + kLinesPerDigest, lines.size());
}

// "host 812 calls", then a digest for each fifty of them: "host 0 cbf29ce484222325".
Lines Condensed(const std::map<std::string, Lines>& threads) {
  Lines condensed;
  for (const auto& [thread, lines] : threads) {
    condensed.push_back(thread + " " + std::to_string(lines.size()) + " calls");
    for (std::size_t begin = 0; begin < lines.size(); begin += kLinesPerDigest) {
      condensed.push_back(thread + " " + std::to_string(begin) + " " +
                          Digest(lines, begin, BlockEnd(lines, begin)));
    }
  }
  return condensed;
}

void WriteWhole(const std::string& file, const std::map<std::string, Lines>& threads) {
  Lines whole;
  for (const auto& [thread, lines] : threads) {
    for (const std::string& line : lines) whole.push_back(thread + " " + line);
  }
  WriteLines(file, whole);
}

// Of each thread the first calls that are not those of the kept recording, as close as its digests
// tell.
std::string FirstDifferences(const std::map<std::string, Lines>& threads, const Lines& kept) {
  std::string text;
  for (const auto& [thread, lines] : threads) {
    for (const std::string& line : Condensed({{thread, lines}})) {
      if (std::find(kept.begin(), kept.end(), line) != kept.end()) continue;
      if (line.find(" calls") != std::string::npos) {
        text += line + ", which is another number\n";
        continue;
      }
      const std::size_t begin = std::stoul(line.substr(thread.size() + 1));
      text += "Among these calls of " + thread + " is its first that differs:\n";
      for (std::size_t i = begin; i < BlockEnd(lines, begin); ++i) text += "  " + lines[i] + "\n";
      break;
    }
  }
  return text;
}

class Recordings : public ::testing::TestWithParam<Scenario> {};

TEST_P(Recordings, AreThoseOfTheDefaultConductEverSince) {
  const Scenario& scenario = GetParam();
  if (Asked("IPODCOMM_RENEW_IPODS")) {
    ipodsim::Settings settings;
    settings.model_id = 0x00140000;  // older consoles take it for one that knows workouts
    if (scenario.name == "silent_ipod") settings.profile = ipodsim::Profile::kSilent;
    NotingDevice simulated(settings);
    CallsOf(scenario, simulated);
    WriteLines(KeptFile(scenario.name + ".ipod"), simulated.noted());
  }
  ScriptedDevice device;
  PlayBack(ReadLines(KeptFile(scenario.name + ".ipod")), &device);
  const std::map<std::string, Lines> threads = CallsOf(scenario, device);
  const std::string kept_file = KeptFile(scenario.name + ".calls");
  if (Asked("IPODCOMM_RENEW_RECORDINGS")) WriteLines(kept_file, Condensed(threads));

  const Lines kept = ReadLines(kept_file);
  const bool same = Condensed(threads) == kept;
  if (same && !Asked("IPODCOMM_WRITE_RECORDINGS")) return;
  const std::string whole = NEW_RECORDINGS "/" + scenario.name + ".recording";
  WriteWhole(whole, threads);
  EXPECT_TRUE(same) << FirstDifferences(threads, kept) << "The new recording is " << whole;
}

INSTANTIATE_TEST_SUITE_P(Of, Recordings, ::testing::ValuesIn(test::Scenarios()),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
