// SPDX-License-Identifier: MIT
// What tshark, with the dissector, makes of sessions: the fields that are kept in kept/, nothing
// that is malformed, and an error for each bad checksum. The sessions take place in the virtual
// world, so that they are the same every time. script/renew-dissected writes what is kept anew.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

#include "dissector/scenarios.h"
#include "one_run.h"
#include "simulator/simulated_ipod.h"
#include "support/pcapng_reader.h"
#include "support/tshark.h"
#include "world/world.h"

namespace {

using dissector::Scenario;
using ipodcomm::virtual_platform::World;

// ipodctl's command in a world of its own, recorded.
void RecordSession(const Scenario& scenario, const std::string& file) {
  ::setenv("IPODCOMM_CAPTURE", file.c_str(), 1);
  ipodsim::SimulatedIpod ipod(scenario.settings);
  World world({1});
  world.line().PlugModel(ipod);
  const truth::Outcome outcome = truth::RunProgram(scenario.arguments);
  EXPECT_FALSE(outcome.deadlocked) << outcome.message;
  world.line().Unplug();
  ::unsetenv("IPODCOMM_CAPTURE");
}

// The columns that tshark prints of a packet.
enum Column {
  kNumber,
  kFrom,
  kLingo,
  kCommand,
  kIdentifier,
  kStatus,
  kQuestion,
  kAnswer,
  kSeverity,
  kBadChecksum,
  kMalformed,
  kLuaError,
  kInfo,
  kColumns,
};

const std::vector<std::string> kFields = {"-T", "fields",
                                          "-E", "separator=/t",
                                          "-e", "frame.number",
                                          "-e", "ipodcomm.from",
                                          "-e", "ipodcomm.lingo",
                                          "-e", "ipodcomm.command",
                                          "-e", "ipodcomm.transaction_id",
                                          "-e", "ipodcomm.status",
                                          "-e", "ipodcomm.response_to",
                                          "-e", "ipodcomm.response_in",
                                          "-e", "_ws.expert.severity",
                                          "-e", "ipodcomm.bad_checksum",
                                          "-e", "_ws.malformed",
                                          "-e", "_ws.lua.error",
                                          "-e", "_ws.col.Info"};

using Row = std::vector<std::string>;

std::vector<Row> Dissect(const std::string& recording) {
  std::vector<Row> rows;
  for (const std::string& line : test::LinesOf(test::Tshark(recording, kFields))) {
    Row row;
    std::istringstream columns(line);
    for (std::string column; std::getline(columns, column, '\t');) row.push_back(column);
    row.resize(kColumns);
    rows.push_back(row);
  }
  return rows;
}

bool IsError(const Row& row) {
  constexpr const char* kError = "8388608";
  std::istringstream severities(row[kSeverity]);
  for (std::string severity; std::getline(severities, severity, ',');) {
    if (severity == kError) return true;
  }
  return false;
}

// "4  >  lingo 0x04 command 0x002c id 0x0007 answered in 5  Extended Interface GetShuffle id
// 0x0007"
std::string Sentence(const Row& row) {
  const auto part = [&](const char* name, Column column) {
    return row[column].empty() ? std::string() : std::string(name) + row[column];
  };
  return row[kNumber] +
         (row[kFrom].empty()     ? "  *"
          : row[kFrom] == "ipod" ? "  <"
                                 : "  >") +
         part("  lingo ", kLingo) + part(" command ", kCommand) + part(" id ", kIdentifier) +
         part(" status ", kStatus) + part(" answers ", kQuestion) + part(" answered in ", kAnswer) +
         (IsError(row) ? "  ERROR" : "") + "  " + row[kInfo];
}

std::vector<std::string> LinesOfFile(const std::string& file) {
  std::ostringstream content;
  content << std::ifstream(file, std::ios::binary).rdbuf();
  return test::LinesOf(content.str());
}

void Write(const std::string& file, const std::vector<std::string>& lines) {
  std::ofstream out(file, std::ios::binary);
  for (const std::string& line : lines) out << line << '\n';
  ASSERT_TRUE(out.flush()) << file;
}

// The numbers of the packets that are whole frames and whose bytes do not sum up to 0.
std::set<std::string> PacketsOfBadChecksum(const std::string& recording) {
  std::set<std::string> numbers;
  const test::ReadRecording read = test::ReadPcapngFile(recording);
  for (std::size_t i = 0; i < read.packets.size(); ++i) {
    const test::RecordedPacket& packet = read.packets[i];
    const bool is_frame = packet.bytes.size() > 4 && packet.bytes[0] == 0xFF &&
                          packet.bytes[1] == 0x55 && packet.comments.empty();
    unsigned sum = 0;
    for (std::size_t at = 2; at < packet.bytes.size(); ++at) sum += packet.bytes[at];
    if (is_frame && sum % 256 != 0) numbers.insert(std::to_string(i + 1));
  }
  return numbers;
}

void ExpectAsKept(const std::string& name, const std::vector<std::string>& lines) {
  const std::string kept = KEPT_DISSECTED "/" + name + ".txt";
  if (std::getenv("IPODCOMM_RENEW_DISSECTED") != nullptr) Write(kept, lines);
  EXPECT_EQ(lines, LinesOfFile(kept)) << "script/renew-dissected writes it anew";
}

class Sessions : public testing::TestWithParam<Scenario> {};

TEST_P(Sessions, AreDissectedAsKept) {
  test::RequireTshark();
  const std::string& name = GetParam().name;
  const std::string recording = NEW_DISSECTED "/" + name + ".pcapng";
  RecordSession(GetParam(), recording);
  std::vector<std::string> dissected;
  std::set<std::string> errors;
  for (const Row& row : Dissect(recording)) {
    EXPECT_EQ(row[kMalformed], "") << row[kNumber];
    EXPECT_EQ(row[kLuaError], "") << row[kNumber];
    if (!row[kBadChecksum].empty() && IsError(row)) errors.insert(row[kNumber]);
    dissected.push_back(Sentence(row));
  }
  EXPECT_GT(dissected.size(), 5U);
  EXPECT_EQ(errors, PacketsOfBadChecksum(recording));

  ExpectAsKept(name, dissected);
}

INSTANTIATE_TEST_SUITE_P(Of, Sessions, testing::ValuesIn(dissector::Scenarios()),
                         [](const auto& tested) { return tested.param.name; });

Scenario Named(const std::string& name) {
  for (const Scenario& scenario : dissector::Scenarios()) {
    if (scenario.name == name) return scenario;
  }
  throw std::logic_error("there is no scenario " + name);
}

TEST(ASession, HasFramesOfBadChecksum) {
  const std::string recording = NEW_DISSECTED "/damaged.pcapng";
  RecordSession(Named("fault_flipped_bits"), recording);
  EXPECT_FALSE(PacketsOfBadChecksum(recording).empty());
}

// Field by field, as the tree shows them.
TEST(ASession, ShowsWhatIsInsideItsLists) {
  test::RequireTshark();
  const std::string recording = NEW_DISSECTED "/lists.pcapng";
  RecordSession(Named("profile_nano"), recording);
  std::vector<std::string> tree;
  for (const std::string& line : test::LinesOf(
           test::Tshark(recording, {"-V", "-O", "ipodcomm", "-Y", "ipodcomm.tokens_list"}))) {
    // What tshark itself says of a packet differs by its version.
    if (line.compare(0, 6, "Frame ") != 0) tree.push_back(line);
  }
  ExpectAsKept("tokens", tree);
}

}  // namespace
