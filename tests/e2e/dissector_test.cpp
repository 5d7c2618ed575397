// SPDX-License-Identifier: MIT
// The Wireshark dissector, in tshark: over a whole session beside ipodctl decode, and over a
// recording that is written here, in which much goes wrong.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "support/process.h"
#include "support/temporary_folder.h"
#include "support/tshark.h"

using nlohmann::json;
using test::Ipodctl;
using test::LinesOf;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TheDissector : public testing::Test {
 protected:
  void SetUp() override { test::RequireTshark(); }

  static std::vector<std::string> Tshark(const std::string& recording,
                                         const std::vector<std::string>& more) {
    return LinesOf(test::Tshark(recording, more));
  }

  // The numbers of the packets that a display filter finds.
  static std::vector<std::string> Found(const std::string& recording, const std::string& filter) {
    return Tshark(recording, {"-Y", filter, "-T", "fields", "-e", "frame.number"});
  }

  test::TemporaryFolder folder_;
};

TEST_F(TheDissector, AgreesWithTheDecoderOnAWholeSession) {
  const std::string recording = folder_.path("tour.pcapng");
  ASSERT_EQ(Ipodctl({"--simulated", "--capture", recording, "tour"}).status, 0);
  std::vector<std::string> decoded;
  for (const std::string& line : LinesOf(Ipodctl({"--json", "decode", recording}).out)) {
    const json told = json::parse(line);
    if (!told.contains("lingo")) continue;
    std::ostringstream text;
    text << told["packet"] << "\t" << told["lingo"]["number"] << "\t"
         << told["command"]["name"].get<std::string>() << "\t";
    if (told["transaction_id"].is_number()) text << told["transaction_id"];
    text << "\t";
    if (told.contains("answers")) text << told["answers"];
    text << "\t";
    for (const json& field : told["fields"]) {
      if (field["name"] == "status") text << field["raw"];
    }
    decoded.push_back(text.str());
  }
  EXPECT_GT(decoded.size(), 100U);
  std::vector<std::string> dissected;
  for (const std::string& line : Tshark(recording, {"-o", "gui.column.format:\"No\",\"%m\"",
                                                    "-Y", "ipodcomm.lingo",
                                                    "-T", "fields",
                                                    "-E", "occurrence=f",
                                                    "-e", "frame.number",
                                                    "-e", "ipodcomm.lingo",
                                                    "-e", "ipodcomm.name",
                                                    "-e", "ipodcomm.transaction_id",
                                                    "-e", "ipodcomm.response_to",
                                                    "-e", "ipodcomm.status"})) {
    // The lingo and the identifier come in hexadecimal.
    std::istringstream columns(line);
    std::string number, lingo, name, identifier, question, status;
    std::getline(columns, number, '\t');
    std::getline(columns, lingo, '\t');
    std::getline(columns, name, '\t');
    std::getline(columns, identifier, '\t');
    std::getline(columns, question, '\t');
    std::getline(columns, status, '\t');
    const auto decimal = [](const std::string& text) {
      return text.empty() ? text : std::to_string(std::stoul(text, nullptr, 0));
    };
    dissected.push_back(number + "\t" + decimal(lingo) + "\t" + name + "\t" + decimal(identifier) +
                        "\t" + question + "\t" + (name == "RetFIDTokenValueACKs" ? "" : status));
  }
  EXPECT_EQ(dissected, decoded);
  // The recording's own comments count as expert information too, of the least severity. A machine
  // that is busy makes answers late, which is told.
  EXPECT_THAT(Found(recording,
                    "_ws.malformed || _ws.lua.error || (_ws.expert.severity >= chat && "
                    "!(ipodcomm.late || ipodcomm.retry || ipodcomm.unanswered))"),
              IsEmpty());
}

std::string Number(std::uint64_t number, int bytes, bool big_endian = false) {
  std::string text;
  for (int i = 0; i < bytes; ++i) {
    const int shift = 8 * (big_endian ? bytes - 1 - i : i);
    text += static_cast<char>(number >> shift);
  }
  return text;
}

std::string Block(std::uint32_t type, const std::string& body) {
  std::string padded = body;
  padded.resize((body.size() + 3) / 4 * 4);
  const std::string length = Number(padded.size() + 12, 4);
  return Number(type, 4) + length + padded + length;
}

// A packet with the event's twelve bytes, at so many milliseconds.
std::string Packet(std::uint64_t at_ms, int event, const std::string& bytes,
                   std::uint64_t interface_number = 0) {
  const std::string content =
      Number(0, 8) + Number(static_cast<unsigned>(event), 1) + Number(0, 3) + bytes;
  const std::uint64_t at_us = at_ms * 1000;
  return Block(6, Number(interface_number, 4) + Number(at_us >> 32, 4) + Number(at_us, 4) +
                      Number(content.size(), 4) + Number(content.size(), 4) + content);
}

std::string Frame(const std::string& content) {
  const std::string counted = Number(content.size(), 1) + content;
  unsigned sum = 0;
  for (const char byte : counted) sum += static_cast<unsigned char>(byte);
  return "\xFF\x55" + counted + Number(0x100 - (sum & 0xFF), 1);
}

std::string Content(std::initializer_list<int> bytes) {
  std::string text;
  for (const int byte : bytes) text += static_cast<char>(byte);
  return text;
}

constexpr int kToIpod = 1;
constexpr int kFromIpod = 2;

const std::string kSection =
    Block(0x0A0D0D0A, Number(0x1A2B3C4D, 4) + Number(1, 4) + Number(~0ULL, 8));

std::string Troubled() {
  const std::string get_shuffle = Frame(Content({0x04, 0x00, 0x2C}));
  std::string damaged = Frame(Content({0x04, 0x00, 0x2D, 0x01}));
  damaged.back() = static_cast<char>(damaged.back() + 1);
  return kSection + Block(1, Number(250, 4) + Number(0, 4)) +
         Packet(1000, kToIpod, get_shuffle) +                                             // 1
         Packet(1020, kFromIpod, damaged) +                                               // 2
         Packet(2030, kToIpod, get_shuffle) +                                             // 3
         Packet(2050, kFromIpod, Frame(Content({0x04, 0x00, 0x2D, 0x01}))) +              // 4
         Packet(2100, kToIpod, Frame(Content({0x04, 0x00, 0x17, 5, 0, 0, 0, 9}))) +       // 5
         Packet(2120, kFromIpod, Frame(Content({0x04, 0x00, 0x01, 0x03, 0, 0x17}))) +     // 6
         Packet(2200, kToIpod, Frame(Content({0x04, 0x00, 0x1E}))) +                      // 7
         Packet(4000, kFromIpod, Frame(Content({0x04, 0x00, 0x1F, 0, 0, 0, 1}))) +        // 8
         Packet(4100, kFromIpod, Frame(Content({0x00, 0x12, 0x01, 0xFA}))) +              // 9
         Packet(4200, kToIpod, Frame(Content({0x00, 0x11}))) +                            // 10
         Packet(4300, kFromIpod, Content({0xFE, 0x66, 0x66})) +                           // 11
         Packet(4400, 7, "") +                                                            // 12
         Packet(5500, kToIpod, Frame(Content({0x00, 0x7E, 0x01}))) +                      // 13
         Packet(5600, kToIpod, Frame(Content({0x00, 0x38}))) +                            // 14
         Packet(5700, kFromIpod, Frame(Content({0x00, 0x38}))) +                          // 15
         Packet(5800, kFromIpod, Frame(Content({0x00, 0x02, 0x00, 0x38}))) +              // 16
         Packet(5900, kToIpod, Frame(Content({0x04, 0x00, 0x2C, 0x00, 0x07}))) +          // 17
         Packet(5950, kFromIpod, Frame(Content({0x04, 0x00, 0x2D, 0x00, 0x09, 0x01}))) +  // 18
         Packet(6000, 6, "");
}

TEST_F(TheDissector, TellsWhatStandsOut) {
  const std::string recording = folder_.Write("troubled.pcapng", Troubled());
  EXPECT_THAT(Found(recording, "ipodcomm.bad_checksum"), ElementsAre("2"));
  EXPECT_THAT(Found(recording, "ipodcomm.retry"), ElementsAre("3"));
  EXPECT_THAT(Found(recording, "ipodcomm.refused"), ElementsAre("6"));
  EXPECT_THAT(Found(recording, "ipodcomm.late"), ElementsAre("8"));
  EXPECT_THAT(Found(recording, "ipodcomm.unasked"), ElementsAre("9"));
  // The question itself, and the frame at which it has waited too long.
  EXPECT_THAT(Found(recording, "ipodcomm.unanswered"), ElementsAre("1", "10", "14"));
  EXPECT_THAT(Found(recording, "ipodcomm.no_frame"), ElementsAre("11"));
  EXPECT_THAT(Found(recording, "ipodcomm.line_event"), ElementsAre("12"));
  EXPECT_THAT(Found(recording, "ipodcomm.damaged"), ElementsAre("13"));
  EXPECT_THAT(Found(recording, "ipodcomm.other_sender"), ElementsAre("15"));
  EXPECT_THAT(Found(recording, "ipodcomm.other_identifier"), ElementsAre("18"));
  EXPECT_THAT(Found(recording, "_ws.malformed || _ws.lua.error"), IsEmpty());
}

TEST_F(TheDissector, GivesABadChecksumTheSeverityOfAnError) {
  const std::string recording = folder_.Write("troubled.pcapng", Troubled());
  EXPECT_THAT(Found(recording, "ipodcomm && _ws.expert.severity == error"), ElementsAre("2", "12"));
}

TEST_F(TheDissector, LinksQuestionsAndAnswers) {
  const std::string recording = folder_.Write("troubled.pcapng", Troubled());
  EXPECT_THAT(Tshark(recording, {"-Y", "ipodcomm.response_in", "-T", "fields", "-e", "frame.number",
                                 "-e", "ipodcomm.response_in"}),
              ElementsAre("3\t4", "5\t6", "7\t8", "14\t16", "17\t18"));
  EXPECT_THAT(Tshark(recording, {"-Y", "ipodcomm.response_to", "-T", "fields", "-e", "frame.number",
                                 "-e", "ipodcomm.response_to", "-e", "ipodcomm.response_time"}),
              ElementsAre("4\t3\t0.020000000", "6\t5\t0.020000000", "8\t7\t1.800000000",
                          "16\t14\t0.200000000", "18\t17\t0.050000000"));
}

TEST_F(TheDissector, FiltersByLingoCommandIdentifierAndStatus) {
  const std::string recording = folder_.Write("troubled.pcapng", Troubled());
  EXPECT_THAT(Found(recording, "ipodcomm.lingo == 0 && ipodcomm.command == 0x38"),
              ElementsAre("14", "15"));
  EXPECT_THAT(Found(recording, "ipodcomm.name == \"ReturnShuffle\""), ElementsAre("2", "4", "18"));
  EXPECT_THAT(Found(recording, "ipodcomm.transaction_id == 9"), ElementsAre("18"));
  EXPECT_THAT(Found(recording, "ipodcomm.status == 3"), ElementsAre("6"));
  EXPECT_THAT(Found(recording, "ipodcomm.record_index == 9"), ElementsAre("5"));
}

// An interface of a line, by name.
std::string Line(const std::string& name) {
  std::string padded = name;
  padded.resize((name.size() + 3) / 4 * 4);
  return Block(1, Number(250, 4) + Number(0, 4) + Number(2, 2) + Number(name.size(), 2) + padded +
                      Number(0, 4));
}

TEST_F(TheDissector, FollowsTheConversationOfALineWhoseSettingsChange) {
  const std::string recording = folder_.Write(
      "changed.pcapng",
      kSection + Line("dock") + Packet(1000, kToIpod, Frame(Content({0x04, 0x00, 0x2C})), 0) +
          Line("dock") + Packet(1020, kFromIpod, Frame(Content({0x04, 0x00, 0x2D, 0x01})), 1));
  EXPECT_THAT(Tshark(recording, {"-Y", "ipodcomm.response_to", "-T", "fields", "-e", "frame.number",
                                 "-e", "ipodcomm.response_to"}),
              ElementsAre("2\t1"));
}

// Both docks are asked the same at the same time.
TEST_F(TheDissector, KeepsTheConversationsOfTwoLinesApart) {
  const std::string get_shuffle = Frame(Content({0x04, 0x00, 0x2C, 0x00, 0x07}));
  const std::string recording = folder_.Write(
      "two.pcapng",
      kSection + Line("left") + Line("right") + Packet(1000, kToIpod, get_shuffle, 0) +       // 1
          Packet(1010, kToIpod, get_shuffle, 1) +                                             // 2
          Packet(1020, kFromIpod, Frame(Content({0x04, 0x00, 0x2D, 0x00, 0x07, 0x01})), 1) +  // 3
          Packet(1030, kFromIpod, Frame(Content({0x04, 0x00, 0x2D, 0x00, 0x07, 0x00})), 0));  // 4
  EXPECT_THAT(Tshark(recording, {"-Y", "ipodcomm.response_to", "-T", "fields", "-e", "frame.number",
                                 "-e", "ipodcomm.response_to"}),
              ElementsAre("3\t2", "4\t1"));
  EXPECT_THAT(Found(recording, "ipodcomm.retry || ipodcomm.unasked || ipodcomm.unanswered"),
              IsEmpty());
}

}  // namespace
