// SPDX-License-Identifier: MIT
// A live session that ends after every single byte from the iPod: the command ends, never with
// success, and the recording of the line always says why, and always the right thing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "one_run.h"
#include "support/temporary_folder.h"
#include "wire/findings/findings.h"
#include "wire/recording_reader.h"
#include "wire/transcript.h"
#include "world/world.h"

namespace truth {
namespace {

using ipodcomm::virtual_platform::kMillisecond;
using ipodcomm::virtual_platform::kSecond;
using ipodcomm::virtual_platform::World;

enum class End { kIpodGone, kLineGone };

// Lets the iPod say so many bytes. Then it is gone, or the line is once they have arrived.
class CutLine : public ipodcomm::virtual_platform::SerialDevice {
 public:
  using Bytes = std::vector<std::uint8_t>;

  CutLine(ipodsim::SimulatedIpod& ipod, std::optional<std::size_t> most, End end)
      : ipod_(ipod), most_(most), end_(end) {}

  void set_world(World& world) { world_ = &world; }

  void Receive(const std::uint8_t* data, std::size_t size, std::int64_t now_us) override {
    if (!cut_at_us_) ipod_.Receive(data, size, now_us);
  }
  std::optional<std::int64_t> NextEvent() override {
    if (!cut_at_us_) return ipod_.NextEvent();
    return end_ == End::kLineGone ? cut_at_us_ : std::nullopt;
  }
  Bytes Transmit(std::int64_t now_us) override {
    if (cut_at_us_) {
      world_->line().Vanish();
      return {};
    }
    Bytes bytes = ipod_.Transmit(now_us);
    if (most_ && said_.size() + bytes.size() >= *most_) {
      bytes.resize(*most_ - said_.size());
      cut_at_us_ = now_us + static_cast<std::int64_t>(bytes.size()) * kMillisecond;
    }
    said_.insert(said_.end(), bytes.begin(), bytes.end());
    return bytes;
  }

  const Bytes& said() const { return said_; }

 private:
  ipodsim::SimulatedIpod& ipod_;
  const std::optional<std::size_t> most_;
  const End end_;
  World* world_ = nullptr;
  Bytes said_;
  std::optional<std::int64_t> cut_at_us_;
};

std::string MostImportantFinding(const std::string& recording) {
  std::ifstream file(recording, std::ios::binary);
  ipodwire::RecordingReader reader([&file](std::uint8_t* bytes, std::size_t count) {
    file.read(reinterpret_cast<char*>(bytes), static_cast<std::streamsize>(count));
    return static_cast<std::size_t>(file.gcount());
  });
  ipodwire::EvidenceCollector collector;
  ipodwire::Transcript transcript([&](const ipodwire::Told& told) { collector.Add(told); });
  ipodwire::Packet packet;
  while (reader.Next(&packet)) {
    collector.set_baud(packet.baud);
    transcript.Add(packet);
  }
  EXPECT_EQ(reader.end(), ipodwire::RecordingReader::End::kClosed) << reader.problem();
  transcript.End();
  const auto findings = FindingsOf(collector.evidence());
  return findings.empty() ? "" : findings.front().code;
}

struct Session {
  Outcome outcome;
  CutLine::Bytes said;  // by the iPod
  std::string finding;  // the most important, E502, or nothing
};

class SessionCutAfterAnyByte : public testing::Test {
 protected:
  SessionCutAfterAnyByte() { ::setenv("IPODCOMM_CAPTURE", recording_.c_str(), 1); }
  ~SessionCutAfterAnyByte() override { ::unsetenv("IPODCOMM_CAPTURE"); }

  Session Run(std::optional<std::size_t> most, End end) const {
    const Case run = *CaseByName("shuffle/nano/fast/none@0/1");
    ipodsim::SimulatedIpod ipod(run.settings());
    CutLine device(ipod, most, end);
    Session session;
    {
      World world({run.seed});
      device.set_world(world);
      world.line().Plug(device);
      session.outcome = RunProgram(run.arguments());
      session.outcome.seconds = static_cast<double>(world.now_us()) / kSecond;
      world.line().Unplug();
    }
    session.said = device.said();
    session.finding = MostImportantFinding(recording_);
    return session;
  }

 private:
  const test::TemporaryFolder folder_;
  const std::string recording_ = folder_.path("line.pcapng");
};

// How many bytes of the last frame have come; all are of the small form. 0 where it is whole.
std::size_t BytesOfCutFrame(const CutLine::Bytes& whole, std::size_t bytes) {
  constexpr std::size_t kAround = 4;  // sync, start, length, checksum
  std::size_t frame = 0;
  for (std::size_t end = 0; end <= bytes; end += whole.at(end + 2) + kAround) frame = end;
  return bytes - frame;
}

// By an iPod that is gone.
std::string ExpectedFinding(const CutLine::Bytes& whole, std::size_t bytes) {
  if (bytes == 0) return "E201";
  // A sync byte alone may be anything.
  if (bytes == 1) return "E203";
  return BytesOfCutFrame(whole, bytes) > 1 ? "E501" : "E503";
}

void ExpectEndedInVain(const Session& session, std::size_t bytes) {
  constexpr double kLongestSeconds = 20;
  EXPECT_FALSE(session.outcome.deadlocked) << bytes << ": " << session.outcome.message;
  EXPECT_NE(session.outcome.status, 0) << bytes;
  EXPECT_LT(session.outcome.seconds, kLongestSeconds) << bytes;
}

TEST_F(SessionCutAfterAnyByte, FindsNothingWhereNothingIsCut) {
  const Session whole = Run(std::nullopt, End::kIpodGone);
  EXPECT_EQ(whole.outcome.status, 0) << whole.outcome.message;
  EXPECT_EQ(whole.finding, "");
  EXPECT_GT(whole.said.size(), 200U);
}

TEST_F(SessionCutAfterAnyByte, ByALineThatFailsSaysThat) {
  const CutLine::Bytes whole = Run(std::nullopt, End::kLineGone).said;
  for (std::size_t bytes = 0; bytes < whole.size(); ++bytes) {
    const Session session = Run(bytes, End::kLineGone);
    ExpectEndedInVain(session, bytes);
    EXPECT_EQ(session.finding, "E502") << bytes;
  }
}

TEST_F(SessionCutAfterAnyByte, ByAnIpodThatIsGoneSaysWhere) {
  const CutLine::Bytes whole = Run(std::nullopt, End::kIpodGone).said;
  for (std::size_t bytes = 0; bytes < whole.size(); ++bytes) {
    const Session session = Run(bytes, End::kIpodGone);
    ExpectEndedInVain(session, bytes);
    EXPECT_EQ(session.finding, ExpectedFinding(whole, bytes)) << bytes;
  }
}

}  // namespace
}  // namespace truth
