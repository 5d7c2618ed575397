// SPDX-License-Identifier: MIT
// The text of the workout document: every line, all combinations of types, events and optional
// elements, and values that no workout has.
#include "workout/document.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

#include "world/world.h"

namespace {

using ipodcomm::WorkoutHeader;
using ipodcomm::WorkoutInterval;
using ipodcomm::WorkoutSummary;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

std::vector<std::wstring> HeaderTexts(const WorkoutHeader& header) {
  std::vector<std::wstring> lines;
  for (const ipodcomm::HeaderLine& line : ipodcomm::HeaderLines(header)) {
    lines.emplace_back(line.Whole().data());
  }
  return lines;
}

std::wstring IntervalText(const WorkoutInterval& interval) {
  return ipodcomm::IntervalBlock(interval).chars;
}

std::wstring SummaryText(const WorkoutSummary& summary) {
  return ipodcomm::SummaryBlock(summary).chars;
}

class Document : public ::testing::Test {
 protected:
  ipodcomm::virtual_platform::World world_;
};

// ---- Header -------------------------------------------------------------------------------------

constexpr WorkoutHeader kHeader = {
    L"ACME", L"Acme Fitness", L"T9", L"SN-0042", IPOD_EQUIPMENT_TYPE_TREADMILL, 70.5};

TEST_F(Document, HeaderTellsEquipmentAndUser) {
  EXPECT_THAT(HeaderTexts(kHeader),
              ElementsAre(L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n",             //
                          L"<gymData>\n",                                              //
                          L"\t<vers>1</vers>\n",                                       //
                          L"\t<equipmentInfo>\n",                                      //
                          L"\t\t<manufacturerID>ACME</manufacturerID>\n",              //
                          L"\t\t<manufacturerName>Acme Fitness</manufacturerName>\n",  //
                          L"\t\t<type>Treadmill</type>\n",                             //
                          L"\t\t<model>T9</model>\n",                                  //
                          L"\t\t<serialNumber>SN-0042</serialNumber>\n",               //
                          L"\t</equipmentInfo>\n",                                     //
                          L"\t<userInfo>\n",                                           //
                          L"\t\t<kg>70.5</kg>\n",                                      //
                          L"\t</userInfo>\n"));
}

TEST_F(Document, HeaderNamesEachEquipment) {
  const wchar_t* const lines[] = {L"\t\t<type>Treadmill</type>\n", L"\t\t<type>Elliptical</type>\n",
                                  L"\t\t<type>Stepper</type>\n", L"\t\t<type>Bike</type>\n",
                                  L"\t\t<type>Other</type>\n"};
  for (int type = 0; type < 5; ++type) {
    WorkoutHeader header = kHeader;
    header.equipment = static_cast<tagIPOD_EQUIPMENT_TYPE>(type);
    const auto written = HeaderTexts(header);
    ASSERT_EQ(written.size(), 13U);
    EXPECT_EQ(written[5], L"\t\t<manufacturerName>Acme Fitness</manufacturerName>\n");
    EXPECT_EQ(written[6], lines[type]);
    EXPECT_EQ(written[7], L"\t\t<model>T9</model>\n");
  }
}

TEST_F(Document, HeaderOfUnknownEquipmentHasNoTypeLine) {
  for (const int type : {7, 5, -1}) {
    WorkoutHeader header = kHeader;
    header.equipment = static_cast<tagIPOD_EQUIPMENT_TYPE>(type);
    const auto written = HeaderTexts(header);
    ASSERT_EQ(written.size(), 12U);
    EXPECT_EQ(written[5], L"\t\t<manufacturerName>Acme Fitness</manufacturerName>\n");
    EXPECT_EQ(written[6], L"\t\t<model>T9</model>\n");
  }
}

TEST_F(Document, HeaderTakesTextsAsTheyAre) {
  const WorkoutHeader header = {L"<&\"'>",     L"Zo\u00EB \u6771\U0001F3B5", L"%s%d",
                                L"</gymData>", IPOD_EQUIPMENT_TYPE_BIKE,     70};
  const auto written = HeaderTexts(header);
  EXPECT_EQ(written[4], L"\t\t<manufacturerID><&\"'></manufacturerID>\n");
  EXPECT_EQ(written[5], L"\t\t<manufacturerName>Zo\u00EB \u6771\U0001F3B5</manufacturerName>\n");
  EXPECT_EQ(written[7], L"\t\t<model>%s%d</model>\n");
  EXPECT_EQ(written[8], L"\t\t<serialNumber></gymData></serialNumber>\n");
}

TEST_F(Document, HeaderTakesEmptyTexts) {
  const auto written = HeaderTexts({L"", L"", L"", L"", IPOD_EQUIPMENT_TYPE_OTHER, 0});
  EXPECT_EQ(written[4], L"\t\t<manufacturerID></manufacturerID>\n");
  EXPECT_EQ(written[5], L"\t\t<manufacturerName></manufacturerName>\n");
  EXPECT_EQ(written[7], L"\t\t<model></model>\n");
  EXPECT_EQ(written[8], L"\t\t<serialNumber></serialNumber>\n");
  EXPECT_EQ(written[11], L"\t\t<kg>0.0</kg>\n");
}

TEST_F(Document, HeaderLineIsAsLongAsItsText) {
  const std::wstring name(2000, L'x');
  const auto written =
      HeaderTexts({name.c_str(), name.c_str(), L"T9", L"1", IPOD_EQUIPMENT_TYPE_OTHER, 70});
  EXPECT_EQ(written[4], L"\t\t<manufacturerID>" + name + L"</manufacturerID>\n");
  EXPECT_EQ(written[5], L"\t\t<manufacturerName>" + name + L"</manufacturerName>\n");
  EXPECT_EQ(written[7], L"\t\t<model>T9</model>\n");
}

TEST_F(Document, HeaderShowsAMissingTextAsNull) {
  const auto written = HeaderTexts({nullptr, L"", L"", L"", IPOD_EQUIPMENT_TYPE_OTHER, 0});
  EXPECT_EQ(written[4], L"\t\t<manufacturerID>(null)</manufacturerID>\n");
}

TEST_F(Document, HeaderLineForWhichThereIsNoMemoryIsNull) {
  const ipodcomm::HeaderLines lines(kHeader);
  world_.FailOnce("LocalAlloc", 1, 8);
  EXPECT_EQ(lines.begin()->Whole().data(), nullptr);
  EXPECT_NE(lines.begin()->Whole().data(), nullptr);
}

std::wstring WeightLine(double weight_kg) {
  WorkoutHeader header = kHeader;
  header.weight_kg = weight_kg;
  return HeaderTexts(header)[11];
}

TEST_F(Document, WeightHasOneDecimal) {
  EXPECT_EQ(WeightLine(70), L"\t\t<kg>70.0</kg>\n");
  EXPECT_EQ(WeightLine(70.26), L"\t\t<kg>70.3</kg>\n");
  EXPECT_EQ(WeightLine(-1.5), L"\t\t<kg>-1.5</kg>\n");
  EXPECT_EQ(WeightLine(0.04), L"\t\t<kg>0.0</kg>\n");
  EXPECT_EQ(WeightLine(kInfinity), L"\t\t<kg>inf</kg>\n");
  EXPECT_EQ(WeightLine(kNoNumber), L"\t\t<kg>nan</kg>\n");
  EXPECT_EQ(WeightLine(1e308).size(), 309U + 14U);
}

// Both neighbours are equally near: the even digit is written.
TEST_F(Document, NumbersHalfwayBetweenTwoEndWithTheEvenDigit) {
  EXPECT_EQ(WeightLine(80.25), L"\t\t<kg>80.2</kg>\n");
  EXPECT_EQ(WeightLine(80.75), L"\t\t<kg>80.8</kg>\n");
  EXPECT_EQ(WeightLine(-80.25), L"\t\t<kg>-80.2</kg>\n");
  EXPECT_THAT(IntervalText({IPOD_INTERVAL_TYPE_START, 0, 0.125, 0.375, IPOD_DISTANCE_TYPE_KM, 0,
                            IPOD_SPEED_TYPE_PACE, 0.25, 0, -1}),
              ::testing::AllOf(HasSubstr(L"<kCal>0.12</kCal>"), HasSubstr(L"<km>0.38</km>"),
                               HasSubstr(L"<incline>0.2</incline>")));
}

// ---- Interval -----------------------------------------------------------------------------------

constexpr WorkoutInterval kInterval = {
    IPOD_INTERVAL_TYPE_CONTINUE, 60,  12.345, 0.256, IPOD_DISTANCE_TYPE_KM, 390.9,
    IPOD_SPEED_TYPE_PACE,        1.5, 128,    6};

TEST_F(Document, IntervalHasALineForEachQuantity) {
  EXPECT_EQ(IntervalText(kInterval),
            L"\t<interval>\n"
            L"\t\t<event>continue</event>\n"
            L"\t\t<sec>60</sec>\n"
            L"\t\t<kCal>12.35</kCal>\n"
            L"\t\t<km>0.26</km>\n"
            L"\t\t<pace>390</pace>\n"
            L"\t\t<incline>1.5</incline>\n"
            L"\t\t<bpm>128</bpm>\n"
            L"\t\t<level>6</level>\n"
            L"\t</interval>\n");
}

TEST_F(Document, ShortestIntervalHasNeitherEventNorOptionalLines) {
  EXPECT_EQ(IntervalText({static_cast<tagIPOD_INTERVAL_TYPE>(5), 0, 0, 0, IPOD_DISTANCE_TYPE_FLOORS,
                          0, IPOD_SPEED_TYPE_RPM, 0, 0, -1}),
            L"\t<interval>\n"
            L"\t\t<sec>0</sec>\n"
            L"\t\t<kCal>0.00</kCal>\n"
            L"\t\t<floors>0.0</floors>\n"
            L"\t\t<rpm>0</rpm>\n"
            L"\t\t<incline>0.0</incline>\n"
            L"\t</interval>\n");
}

struct Row {
  int value;
  const wchar_t* lines;
};

constexpr Row kEvents[] = {{0, L"\t\t<event>start</event>\n"},     //
                           {1, L"\t\t<event>continue</event>\n"},  //
                           {2, L"\t\t<event>pause</event>\n"},     //
                           {3, L"\t\t<event>resume</event>\n"},    //
                           {4, L"\t\t<event>end</event>\n"},       //
                           {5, L""},
                           {-1, L""}};

struct Quantities {
  int distance_type;
  int speed_type;
  const wchar_t* lines;
};

// What an unknown type does not have is the line before it again.
constexpr Quantities kQuantities[] = {
    {0, 0, L"\t\t<kCal>1.25</kCal>\n\t\t<km>3.46</km>\n\t\t<pace>59</pace>\n"},
    {0, 1, L"\t\t<kCal>1.25</kCal>\n\t\t<km>3.46</km>\n\t\t<spm>59</spm>\n"},
    {0, 2, L"\t\t<kCal>1.25</kCal>\n\t\t<km>3.46</km>\n\t\t<rpm>59</rpm>\n"},
    {0, 3, L"\t\t<kCal>1.25</kCal>\n\t\t<km>3.46</km>\n\t\t<km>3.46</km>\n"},
    {0, -1, L"\t\t<kCal>1.25</kCal>\n\t\t<km>3.46</km>\n\t\t<km>3.46</km>\n"},
    {1, 0, L"\t\t<kCal>1.25</kCal>\n\t\t<floors>3.5</floors>\n\t\t<pace>59</pace>\n"},
    {1, 1, L"\t\t<kCal>1.25</kCal>\n\t\t<floors>3.5</floors>\n\t\t<spm>59</spm>\n"},
    {1, 2, L"\t\t<kCal>1.25</kCal>\n\t\t<floors>3.5</floors>\n\t\t<rpm>59</rpm>\n"},
    {1, 3, L"\t\t<kCal>1.25</kCal>\n\t\t<floors>3.5</floors>\n\t\t<floors>3.5</floors>\n"},
    {2, 0, L"\t\t<kCal>1.25</kCal>\n\t\t<kCal>1.25</kCal>\n\t\t<pace>59</pace>\n"},
    {2, 1, L"\t\t<kCal>1.25</kCal>\n\t\t<kCal>1.25</kCal>\n\t\t<spm>59</spm>\n"},
    {2, 2, L"\t\t<kCal>1.25</kCal>\n\t\t<kCal>1.25</kCal>\n\t\t<rpm>59</rpm>\n"},
    {2, 3, L"\t\t<kCal>1.25</kCal>\n\t\t<kCal>1.25</kCal>\n\t\t<kCal>1.25</kCal>\n"},
    {-1, 0, L"\t\t<kCal>1.25</kCal>\n\t\t<kCal>1.25</kCal>\n\t\t<pace>59</pace>\n"},
};

constexpr Row kRates[] = {{0, L""}, {72, L"\t\t<bpm>72</bpm>\n"}, {-3, L"\t\t<bpm>-3</bpm>\n"}};
constexpr Row kLevels[] = {{-1, L""},
                           {0, L"\t\t<level>0</level>\n"},
                           {20, L"\t\t<level>20</level>\n"},
                           {-2, L"\t\t<level>-2</level>\n"}};

TEST_F(Document, IntervalIsRightInEveryCombination) {
  int combinations = 0;
  for (const Row& event : kEvents) {
    for (const Quantities& quantities : kQuantities) {
      for (const Row& rate : kRates) {
        for (const Row& level : kLevels) {
          const WorkoutInterval interval = {
              static_cast<tagIPOD_INTERVAL_TYPE>(event.value),
              45,
              1.25,
              3.456,
              static_cast<tagIPOD_DISTANCE_TYPE>(quantities.distance_type),
              59.99,
              static_cast<tagIPOD_SPEED_TYPE>(quantities.speed_type),
              -2.5,
              rate.value,
              level.value};
          const std::wstring written = std::wstring(L"\t<interval>\n") + event.lines +
                                       L"\t\t<sec>45</sec>\n" + quantities.lines +
                                       L"\t\t<incline>-2.5</incline>\n" + rate.lines + level.lines +
                                       L"\t</interval>\n";
          ASSERT_EQ(IntervalText(interval), written);
          ++combinations;
        }
      }
    }
  }
  EXPECT_EQ(combinations, 7 * 14 * 3 * 4);
}

TEST_F(Document, UnknownDistanceRepeatsTheEnergy) {
  WorkoutInterval interval = kInterval;
  interval.distance_type = static_cast<tagIPOD_DISTANCE_TYPE>(2);
  EXPECT_EQ(IntervalText(interval),
            L"\t<interval>\n"
            L"\t\t<event>continue</event>\n"
            L"\t\t<sec>60</sec>\n"
            L"\t\t<kCal>12.35</kCal>\n"
            L"\t\t<kCal>12.35</kCal>\n"
            L"\t\t<pace>390</pace>\n"
            L"\t\t<incline>1.5</incline>\n"
            L"\t\t<bpm>128</bpm>\n"
            L"\t\t<level>6</level>\n"
            L"\t</interval>\n");
}

// ---- Summary ------------------------------------------------------------------------------------

constexpr WorkoutSummary kSummary = {1800, 250.128, 5.004, IPOD_DISTANCE_TYPE_KM, 359.9, 131};

TEST_F(Document, SummaryHasALineForEachQuantity) {
  EXPECT_EQ(SummaryText(kSummary),
            L"\t<workoutSummary>\n"
            L"\t\t<sec>1800</sec>\n"
            L"\t\t<kCal>250.13</kCal>\n"
            L"\t\t<km>5.00</km>\n"
            L"\t\t<pace>359</pace>\n"
            L"\t\t<bpm>131</bpm>\n"
            L"\t</workoutSummary>\n");
}

// The distance type chooses the element of the speed, too.
constexpr Row kSummaries[] = {
    {0, L"\t\t<kCal>1.25</kCal>\n\t\t<km>3.46</km>\n\t\t<pace>59</pace>\n"},
    {1, L"\t\t<kCal>1.25</kCal>\n\t\t<floors>3.5</floors>\n\t\t<spm>59</spm>\n"},
    {2, L"\t\t<kCal>1.25</kCal>\n\t\t<kCal>1.25</kCal>\n\t\t<rpm>59</rpm>\n"},
    {3, L"\t\t<kCal>1.25</kCal>\n\t\t<kCal>1.25</kCal>\n\t\t<kCal>1.25</kCal>\n"},
    {-1, L"\t\t<kCal>1.25</kCal>\n\t\t<kCal>1.25</kCal>\n\t\t<kCal>1.25</kCal>\n"}};

TEST_F(Document, SummaryIsRightInEveryCombination) {
  for (const Row& quantities : kSummaries) {
    for (const Row& rate : kRates) {
      const WorkoutSummary summary = {
          45, 1.25, 3.456, static_cast<tagIPOD_DISTANCE_TYPE>(quantities.value), 59.99, rate.value};
      EXPECT_EQ(SummaryText(summary), std::wstring(L"\t<workoutSummary>\n\t\t<sec>45</sec>\n") +
                                          quantities.lines + rate.lines + L"\t</workoutSummary>\n");
    }
  }
}

// ---- Unusable values ----------------------------------------------------------------------------

std::wstring PaceLine(double speed) {
  WorkoutSummary summary = kSummary;
  summary.speed = speed;
  const std::wstring block = SummaryText(summary);
  const std::size_t start = block.find(L"\t\t<pace>");
  return block.substr(start, block.find(L'\n', start) - start);
}

TEST_F(Document, SpeedIsTruncatedTowardZero) {
  EXPECT_EQ(PaceLine(5.99), L"\t\t<pace>5</pace>");
  EXPECT_EQ(PaceLine(-5.99), L"\t\t<pace>-5</pace>");
  EXPECT_EQ(PaceLine(0.9), L"\t\t<pace>0</pace>");
  EXPECT_EQ(PaceLine(-0.9), L"\t\t<pace>0</pace>");
  EXPECT_EQ(PaceLine(2147483647.0), L"\t\t<pace>2147483647</pace>");
  EXPECT_EQ(PaceLine(2147483646.9), L"\t\t<pace>2147483646</pace>");
  EXPECT_EQ(PaceLine(-2147483648.0), L"\t\t<pace>-2147483648</pace>");
}

TEST_F(Document, SpeedBeyondAnIntegerBecomesTheNearestOneAndNoNumberZero) {
  EXPECT_EQ(PaceLine(2147483648.0), L"\t\t<pace>2147483647</pace>");
  EXPECT_EQ(PaceLine(1e308), L"\t\t<pace>2147483647</pace>");
  EXPECT_EQ(PaceLine(kInfinity), L"\t\t<pace>2147483647</pace>");
  EXPECT_EQ(PaceLine(-2147483649.0), L"\t\t<pace>-2147483648</pace>");
  EXPECT_EQ(PaceLine(-1e308), L"\t\t<pace>-2147483648</pace>");
  EXPECT_EQ(PaceLine(-kInfinity), L"\t\t<pace>-2147483648</pace>");
  EXPECT_EQ(PaceLine(kNoNumber), L"\t\t<pace>0</pace>");
}

TEST_F(Document, NegativeAndExtremeNumbersAreWrittenAsTheyAre) {
  constexpr int kLeast = std::numeric_limits<int>::min();
  EXPECT_EQ(IntervalText({IPOD_INTERVAL_TYPE_START, kLeast, -kInfinity, kNoNumber,
                          IPOD_DISTANCE_TYPE_FLOORS, -1, IPOD_SPEED_TYPE_SPM, kInfinity, kLeast,
                          std::numeric_limits<int>::max()}),
            L"\t<interval>\n"
            L"\t\t<event>start</event>\n"
            L"\t\t<sec>-2147483648</sec>\n"
            L"\t\t<kCal>-inf</kCal>\n"
            L"\t\t<floors>nan</floors>\n"
            L"\t\t<spm>-1</spm>\n"
            L"\t\t<incline>inf</incline>\n"
            L"\t\t<bpm>-2147483648</bpm>\n"
            L"\t\t<level>2147483647</level>\n"
            L"\t</interval>\n");
}

TEST_F(Document, IntervalIsCutTo511CharactersAndSummaryTo512) {
  const WorkoutInterval interval = {
      IPOD_INTERVAL_TYPE_START, 1,     1e308, 1e308, IPOD_DISTANCE_TYPE_KM, 1,
      IPOD_SPEED_TYPE_PACE,     1e308, 1,     1};
  const std::wstring block = IntervalText(interval);
  EXPECT_EQ(block.size(), 511U);
  EXPECT_EQ(block.substr(0, 63),
            L"\t<interval>\n\t\t<event>start</event>\n\t\t<sec>1</sec>\n\t\t<kCal>10000");
  EXPECT_THAT(block, HasSubstr(L".00</kCal>\n\t\t<km>1"));
  EXPECT_THAT(block, Not(HasSubstr(L"</km>")));

  const std::wstring summary = SummaryText({1, 1e308, -1e308, IPOD_DISTANCE_TYPE_KM, 1, 1});
  EXPECT_EQ(summary.size(), 512U);
  EXPECT_THAT(summary, HasSubstr(L".00</kCal>\n\t\t<km>-1"));
}

TEST_F(Document, BlockThatFitsExactlyIsWhole) {
  // The energy has 309 digits, the distance 95 and then one more.
  const std::wstring whole = SummaryText({0, 1e308, 2e94, IPOD_DISTANCE_TYPE_FLOORS, 0, 0});
  EXPECT_EQ(whole.size(), 512U);
  EXPECT_EQ(whole.substr(512 - 34), L"\t\t<spm>0</spm>\n\t</workoutSummary>\n");
  const std::wstring cut = SummaryText({0, 1e308, 2e95, IPOD_DISTANCE_TYPE_FLOORS, 0, 0});
  EXPECT_EQ(cut.size(), 512U);
  EXPECT_EQ(cut.substr(512 - 33), L"\t\t<spm>0</spm>\n\t</workoutSummary>");
}

TEST_F(Document, FailedFormattingLeavesALineOut) {
  world_.FailOnce("StringCchPrintfW", 2, 87);
  EXPECT_EQ(SummaryText(kSummary),
            L"\t<workoutSummary>\n"
            L"\t\t<sec>1800</sec>\n"
            L"\t\t<km>5.00</km>\n"
            L"\t\t<pace>359</pace>\n"
            L"\t\t<bpm>131</bpm>\n"
            L"\t</workoutSummary>\n");
}

}  // namespace
