// SPDX-License-Identifier: MIT
// Numbers and names in the legacy workout document, to their limits and beyond.
#include <limits>

#include "support/packets.h"
#include "workout_test.h"

namespace {

using test::kHandle;
using test::WorkoutTest;
using ::testing::ElementsAre;

class WorkoutValues : public WorkoutTest {};

// ---- Numbers

TEST_F(WorkoutValues, IntegersAreWrittenAsSignedOnes) {
  Begin();
  constexpr unsigned kMost = std::numeric_limits<unsigned>::max();
  EXPECT_EQ(
      legacy_.intervalworkout(6, kMost, 0x80000000U, 0, 0, 0x7FFFFFFFU, 0, 0, kMost, 0, kMost), 1);
  EXPECT_THAT(answering_.DrainLines(kHandle, kHeaderBytes),
              ElementsAre("\t<interval>\n", "\t\t<sec>-1</sec>\n", "\t\t<kCal>-2147483648</kCal>\n",
                          "\t\t<km>0.000000</km>\n", "\t\t<pace>2147483647</pace>\n",
                          "\t\t<bpm>-1</bpm>\n", "\t\t<incline>0.000000</incline>\n",
                          "\t\t<level>-1</level>\n", "\t</interval>\n"));
}

struct Number {
  const char* name;
  float value;
  const char* text;
};
void PrintTo(const Number& row, std::ostream* out) { *out << row.name; }

class FloatValues : public WorkoutTest, public ::testing::WithParamInterface<Number> {};

TEST_P(FloatValues, AreWrittenWithSixDecimals) {
  const float value = GetParam().value;
  const std::string text = GetParam().text;
  EXPECT_EQ(Start(1, value), 1);
  EXPECT_EQ(answering_.DrainLines(kHandle, 0)[12], "\t\t<kg>" + text + "</kg>\n");
  const std::uint32_t header_bytes = ipodPeer::StorageWriteOffset(legacy_);
  EXPECT_EQ(legacy_.intervalworkout(6, 0, 0, value, 0, 0, 0, 0, 0, value, 0), 1);
  const std::vector<std::string> interval = answering_.DrainLines(kHandle, header_bytes);
  EXPECT_EQ(interval[3], "\t\t<km>" + text + "</km>\n");
  EXPECT_EQ(interval[6], "\t\t<incline>" + text + "</incline>\n");
  const std::uint32_t interval_bytes = ipodPeer::StorageWriteOffset(legacy_);
  EXPECT_EQ(legacy_.finishworkout(0, 0, value, 0, 0, 0, 0, 0), 1);
  EXPECT_EQ(answering_.DrainLines(kHandle, interval_bytes)[3], "\t\t<km>" + text + "</km>\n");
}

// Single precision, widened: a tenth is not a tenth in the seventh decimal.
INSTANTIATE_TEST_SUITE_P(
    Rows, FloatValues,
    ::testing::Values(Number{"tenth", 0.1F, "0.100000"},
                      Number{"halfway_goes_to_the_even_digit", 0.0078125F, "0.007812"},
                      Number{"rounded", 0.0000006F, "0.000001"},
                      Number{"too_small_to_show", 1e-9F, "0.000000"},
                      Number{"minus_zero", -0.0F, "-0.000000"},
                      Number{"negative", -2.5F, "-2.500000"},
                      Number{"beyond_single_precision", 16777217.0F, "16777216.000000"},
                      Number{"huge", 3e38F, "300000000549775575777803994281145270272.000000"},
                      Number{"largest", std::numeric_limits<float>::max(),
                             "340282346638528859811704183484516925440.000000"},
                      Number{"infinite", std::numeric_limits<float>::infinity(), "inf"},
                      Number{"no_number", std::numeric_limits<float>::quiet_NaN(), "nan"}),
    test::RowName());

// ---- Names

TEST_F(WorkoutValues, PercentSignsInNamesStandForThemselves) {
  names_.manufacturer_id = L"100%s%n";
  names_.gym_name = L"50% %d %%";
  EXPECT_EQ(Start(), 1);
  const std::vector<std::string> lines = answering_.DrainLines(kHandle, 0);
  EXPECT_EQ(lines[4], "\t\t<manufacturerID>100%s%n</manufacturerID>\n");
  EXPECT_EQ(lines[8], "\t\t<gymName>50% %d %%</gymName>\n");
}

TEST_F(WorkoutValues, PercentSignsStandForThemselvesInTheStatusToo) {
  names_.gym_name = L"50% %d %%";
  answering_.AnswerNth("0C 07", 9, "");
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(Status(), "\t\t<gymName>50% %d %%</gymName>\n");
}

TEST_F(WorkoutValues, NamesGoOutAsTheyAreWithTheLowByteOfEachCharacter) {
  names_.gym_name = L"<Z\u00F6\u20AC&>";
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(answering_.DrainLines(kHandle, 0)[8], "\t\t<gymName><Z\xF6\xAC&></gymName>\n");
}

TEST_F(WorkoutValues, EmptyNamesHaveTheirLines) {
  names_ = {L"", L"", L"", L"", L"", L""};
  EXPECT_EQ(Start(), 1);
  const std::vector<std::string> lines = answering_.DrainLines(kHandle, 0);
  EXPECT_EQ(lines[4], "\t\t<manufacturerID></manufacturerID>\n");
  EXPECT_EQ(lines[6], "\t\t<model></model>\n");
  EXPECT_EQ(lines[7], "\t\t<serialNumber></serialNumber>\n");
  EXPECT_EQ(lines[8], "\t\t<gymName></gymName>\n");
  EXPECT_EQ(lines[9], "\t\t<gymLocation></gymLocation>\n");
}

TEST_F(WorkoutValues, MissingNamesDoNoHarm) {
  EXPECT_EQ(legacy_.startworkout(1, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 70), 1);
  EXPECT_EQ(answering_.DrainLines(kHandle, 0)[6], "\t\t<model>(null)</model>\n");
}

class LongNames : public WorkoutTest, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(LongNames, EndTheHeaderBeforeThem) {
  names_.gym_name = std::wstring(GetParam(), L'%');
  EXPECT_EQ(Start(), 0);
  EXPECT_EQ(answering_.DrainLines(kHandle, 0).size(), 8U);
  EXPECT_EQ(Status(),
            ("\t\t<gymName>" + std::string(GetParam(), '%') + "</gymName>\n").substr(0, 255));
}

// 22 characters are around the name.
INSTANTIATE_TEST_SUITE_P(Lengths, LongNames,
                         ::testing::Values(224, 233, 234, 235, 244, 1000, 65536, 70000));

TEST_F(WorkoutValues, LineHoldsANameOf223Characters) {
  names_.gym_name = std::wstring(223, L'n');
  EXPECT_EQ(Start(), 1);
  EXPECT_EQ(answering_.DrainLines(kHandle, 0)[8].size(), 245U);
}

}  // namespace
