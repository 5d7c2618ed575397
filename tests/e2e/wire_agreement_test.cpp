// SPDX-License-Identifier: MIT
// What ipodctl decodes from a recording, and what the simulated iPod says it met. The two share no
// code: a mistake in one table shows against the other.
#include <gtest/gtest.h>

#include <cctype>
#include <csignal>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "simulator/protocol/command_table.h"
#include "support/process.h"
#include "support/temporary_folder.h"
#include "support/tshark.h"

using nlohmann::json;
using test::Ended;
using test::Ipodctl;
using test::Process;

namespace {

struct Frames {
  std::vector<std::string> to_ipod;
  std::vector<std::string> from_ipod;
};

// "General StartIDPS" for each frame, named by the simulated iPod's own table.
Frames Decoded(const std::string& recording) {
  const Ended ended = Ipodctl({"--json", "decode", recording});
  EXPECT_EQ(ended.status, 0) << ended.err;
  Frames frames;
  for (const std::string& line : test::LinesOf(ended.out)) {
    const json told = json::parse(line);
    if (!told.contains("lingo")) continue;
    EXPECT_TRUE(told["notes"].empty()) << line;
    const bool from_ipod = told["from"] == "ipod";
    const auto lingo = told["lingo"]["number"].get<std::uint8_t>();
    std::string name =
        std::string(ipodsim::LingoName(lingo)) + " " +
        ipodsim::CommandName(lingo, told["command"]["number"],
                             from_ipod ? ipodsim::Sender::kIpod : ipodsim::Sender::kAccessory);
    if (told["transaction_id"].is_number()) {
      std::ostringstream identifier;
      identifier << std::uppercase << std::hex << std::setw(4) << std::setfill('0')
                 << told["transaction_id"].get<unsigned>();
      name += " id " + identifier.str();
    }
    (from_ipod ? frames.from_ipod : frames.to_ipod).push_back(name);
  }
  return frames;
}

// The lines of a trace begin with the time, the direction and what Decoded() gives.
Frames Traced(const std::string& trace) {
  Frames frames;
  for (const std::string& line : test::LinesOf(trace)) {
    const std::size_t to_ipod = line.find(" > ");
    const std::size_t from_ipod = line.find(" < ");
    if (to_ipod < 20) frames.to_ipod.push_back(line.substr(to_ipod + 3));
    if (from_ipod < 20) frames.from_ipod.push_back(line.substr(from_ipod + 3));
  }
  return frames;
}

void ExpectSame(const std::vector<std::string>& decoded, const std::vector<std::string>& traced) {
  ASSERT_EQ(decoded.size(), traced.size());
  for (std::size_t i = 0; i < decoded.size(); ++i) {
    EXPECT_EQ(traced[i].rfind(decoded[i], 0), 0U) << decoded[i] << "\n" << traced[i];
  }
}

class TheDecoder : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(TheDecoder, AgreesWithTheSimulatedIpodOnEveryFrame) {
  const test::TemporaryFolder folder;
  Process ipodsim(IPODSIM_PROGRAM, {"--link", folder.path("ipod"), "--trace", "--capture",
                                    folder.path("ipod.pcapng")});
  ASSERT_TRUE(ipodsim.WaitForOutput("serving"));
  std::vector<std::string> arguments = {"--port", folder.path("ipod")};
  arguments.insert(arguments.end(), GetParam().begin(), GetParam().end());
  const Ended ended = Ipodctl(arguments);
  EXPECT_EQ(ended.status, 0) << ended.err;
  ipodsim.Signal(SIGINT);
  const Frames traced = Traced(ipodsim.Wait().err);
  const Frames decoded = Decoded(folder.path("ipod.pcapng"));
  EXPECT_GT(decoded.to_ipod.size(), 5U);
  ExpectSame(decoded.to_ipod, traced.to_ipod);
  ExpectSame(decoded.from_ipod, traced.from_ipod);
}

std::string NameOf(const testing::TestParamInfo<std::vector<std::string>>& info) {
  std::string name;
  for (const std::string& word : info.param) {
    for (const char letter : word) {
      if (std::isalnum(static_cast<unsigned char>(letter)) != 0) name += letter;
    }
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(OfASession, TheDecoder,
                         testing::Values(std::vector<std::string>{"--conduct", "fast", "info"},
                                         std::vector<std::string>{"--no-idps", "info"},
                                         std::vector<std::string>{"browse", "artists"},
                                         std::vector<std::string>{"prefs"},
                                         std::vector<std::string>{"workout", "--duration", "5",
                                                                  "--speed", "100"},
                                         std::vector<std::string>{"--legacy", "info"}),
                         NameOf);

}  // namespace
