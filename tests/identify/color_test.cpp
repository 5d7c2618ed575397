// SPDX-License-Identifier: MIT
// The docked iPod's colour by its model text: every order number, the order of the groups, and what
// happens without a match or an answer.
#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "identify/identification.h"

namespace {

using test::SessionTest;
using ::testing::ElementsAre;

constexpr const char* kRequest = "FF 55 02 00 0D F1";

struct Group {
  std::string name;
  tagIPOD_COLOR color;
  std::string order_numbers;
};

// In the order in which they are searched.
const std::vector<Group> kGroups = {
    {"Group1", IPOD_COLOR_2,
     "M9160 P9160 M9800 P9800 M9801 P9801 M9973 M9974 MA426 PA426 PA427 MA477 PA477 "
     "PA478 MB029 PB029 PB031 MB145 PB145 PB146 MA978 PA978 PA979 MB245 MA980 PA980 "
     "PA981 MB247 MB598 MB599 MB903 MB904 MB920 PB903 PB904 PB920"},
    {"Group2", IPOD_COLOR_3,
     "M9434 P9434 M9806 P9806 M9807 P9807 MA487 PA487 PA488 MB253 PB253 PB254 MB255 "
     "MB745 PB745 PB746 MB913 MB914 MB925 PB913 PB914 PB925"},
    {"Group3", IPOD_COLOR_4,
     "M9435 P9435 M9804 P9804 M9805 P9805 MA489 PA489 PA490 MB453 PB453 PB454 MB455 "
     "MB456 MB735 PB735 PB736 MB907 MB908 MB922 PB907 PB908 PB922"},
    {"Group4", IPOD_COLOR_5,
     "M9436 P9436 M9802 P9802 M9803 P9803 MA428 PA428 PA429 MB249 PB249 PB250 MB251 "
     "MB732 PB732 PB733 MB905 MB906 MB921 PB905 PB906 PB921"},
    {"Group5", IPOD_COLOR_6, "M9437 P9437"},
    {"Group6", IPOD_COLOR_7, "M9787"},
    {"Group7", IPOD_COLOR_7,
     "MA099 PA099 PA100 MA107 PA107 PA108 MA127 MA146 PA146 PA149 MA446 PA446 MA147 "
     "PA147 PA151 MA305 MA352 PA352 PA353 MA450 PA450 PA451 MA452 MA664 MA497 PA497 "
     "PA498 MB046 MB048 MB147 PB147 PB148 MB150 PB150 PB151 MB261 PB261 PB262 MB263 "
     "MB754 PB754 PB755 PB889 MB918 MB919 MB927 PB918 PB919 PB927"},
    {"Group8", IPOD_COLOR_1,
     "MA002 PA002 PA148 PA323 MA444 PA444 MA003 PA003 PA150 MA004 PA004 PA115 MA005 "
     "PA005 PA116 MA253 MA350 PA350 PA351 MA448 PA448 PA449 PS492 MB499"},
    {"Group9", IPOD_COLOR_8, "MA725 PA725 MA899 PA899 MB751 MB753 PB751 MB917 PB917"},
    {"Group10", IPOD_COLOR_10, "MB739 PB739 PB740 MB909 MB910 MB923 PB909 PB910 PB923"},
    {"Group11", IPOD_COLOR_9, "MB742 PB742 PB743 MB911 MB912 MB924 PB911 PB912 PB924"},
    {"Group12", IPOD_COLOR_11, "MB748 PB748 PB749 MB915 MB916 MB926 PB915 PB916 PB926"},
};

void PrintTo(const Group& group, std::ostream* stream) { *stream << group.name; }

std::vector<std::string> Words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

std::string ModelAnswer(const std::string& model) {
  return test::Frame("00 0E 00 0B 00 11 " + test::ToHex(test::Bytes(model.begin(), model.end())) +
                     " 00");
}

class Color : public SessionTest {
 protected:
  // The colour for a model text. The iPod answers one request with it.
  tagIPOD_COLOR ColorOf(const std::string& model) {
    ipod_.SendAt(world_.now_us() + 22 * test::kMillisecond, test::Hex(ModelAnswer(model)));
    tagIPOD_COLOR color = IPOD_COLOR_11;
    EXPECT_EQ(session_.GetIPodColor(&color), 1) << model;
    return color;
  }
};

class OrderNumbers : public Color, public ::testing::WithParamInterface<Group> {};

TEST_P(OrderNumbers, EachStandsForTheGroupsColor) {
  for (const std::string& number : Words(GetParam().order_numbers)) {
    EXPECT_EQ(ColorOf(number), GetParam().color) << number;
  }
}

TEST_P(OrderNumbers, EachIsFoundInsideTheText) {
  for (const std::string& number : Words(GetParam().order_numbers)) {
    EXPECT_EQ(ColorOf("x" + number + "LL/A"), GetParam().color) << number;
  }
}

TEST_P(OrderNumbers, StandForTheColorAlsoWhereTheModelIsKnownAlready) {
  for (const std::string& number : Words(GetParam().order_numbers)) {
    const std::wstring model(number.begin(), number.end());
    EXPECT_EQ(CIpodComm::ColorOfModel((model + L"LL/A").c_str()), GetParam().color) << number;
    EXPECT_EQ(CIpodComm::ColorOfModel(model.substr(1).c_str()), IPOD_COLOR_NONE) << number;
  }
}

TEST_P(OrderNumbers, NeedTheirUpperCaseAndTheirWholeLength) {
  for (std::string number : Words(GetParam().order_numbers)) {
    EXPECT_EQ(ColorOf(number.substr(0, 4)), IPOD_COLOR_NONE) << number;
    EXPECT_EQ(ColorOf(number.substr(1)), IPOD_COLOR_NONE) << number;
    number[0] = static_cast<char>(number[0] - 'A' + 'a');
    EXPECT_EQ(ColorOf(number), IPOD_COLOR_NONE) << number;
  }
}

INSTANTIATE_TEST_SUITE_P(Groups, OrderNumbers, ::testing::ValuesIn(kGroups), test::RowName());

TEST(OrderNumberTable, Holds215DifferentNumbersOfFiveCharacters) {
  std::vector<std::string> all;
  for (const Group& group : kGroups) {
    for (const std::string& number : Words(group.order_numbers)) {
      EXPECT_EQ(number.size(), 5U) << number;
      all.push_back(number);
    }
  }
  EXPECT_EQ(all.size(), 215U);
  std::sort(all.begin(), all.end());
  EXPECT_EQ(std::unique(all.begin(), all.end()), all.end());
}

TEST(Colors, AreNumberedFromZeroToEleven) {
  const tagIPOD_COLOR colors[] = {IPOD_COLOR_NONE, IPOD_COLOR_1, IPOD_COLOR_2,  IPOD_COLOR_3,
                                  IPOD_COLOR_4,    IPOD_COLOR_5, IPOD_COLOR_6,  IPOD_COLOR_7,
                                  IPOD_COLOR_8,    IPOD_COLOR_9, IPOD_COLOR_10, IPOD_COLOR_11};
  for (int number = 0; number < 12; ++number) EXPECT_EQ(int{colors[number]}, number);
}

TEST_F(Color, EarlierGroupDecidesWhereverItsNumberStands) {
  for (std::size_t earlier = 0; earlier + 1 < kGroups.size(); ++earlier) {
    for (std::size_t later = earlier + 1; later < kGroups.size(); ++later) {
      const std::string first = Words(kGroups[earlier].order_numbers).back();
      const std::string second = Words(kGroups[later].order_numbers).front();
      EXPECT_EQ(ColorOf(first + " " + second), kGroups[earlier].color) << first << second;
      EXPECT_EQ(ColorOf(second + " " + first), kGroups[earlier].color) << second << first;
    }
  }
}

TEST_F(Color, GroupOfTenGoesBeforeTheGroupOfNine) {
  EXPECT_EQ(ColorOf("MB742 MB739"), IPOD_COLOR_10);
}

TEST_F(Color, ModelTextIsAskedForOnce) {
  Answer(kRequest, ModelAnswer("MA002LL"));
  tagIPOD_COLOR color = IPOD_COLOR_NONE;
  EXPECT_EQ(session_.GetIPodColor(&color), 1);
  EXPECT_EQ(color, IPOD_COLOR_1);
  EXPECT_THAT(DrainSent(), ElementsAre(kRequest));
}

TEST_F(Color, UnknownModelHasNoneAndSucceeds) {
  EXPECT_EQ(ColorOf("XB909"), IPOD_COLOR_NONE);
  EXPECT_EQ(ColorOf("M9161"), IPOD_COLOR_NONE);
  EXPECT_EQ(ColorOf(""), IPOD_COLOR_NONE);
}

TEST_F(Color, OnlyTheFirstNineteenCharactersAreSearched) {
  EXPECT_EQ(ColorOf("xxxxxxxxxxxxxxMA002"), IPOD_COLOR_1);
  EXPECT_EQ(ColorOf("xxxxxxxxxxxxxxxMA002"), IPOD_COLOR_NONE);
  EXPECT_EQ(ColorOf("MA002" + std::string(200, 'x')), IPOD_COLOR_1);
}

TEST_F(Color, TextEndsAtItsTerminator) {
  Answer(kRequest, test::Frame("00 0E 00 0B 00 11 4D 41 00 4D 41 30 30 32 00"));
  tagIPOD_COLOR color = IPOD_COLOR_11;
  EXPECT_EQ(session_.GetIPodColor(&color), 1);
  EXPECT_EQ(color, IPOD_COLOR_NONE);
}

TEST_F(Color, UnansweredRequestFailsWithNone) {
  tagIPOD_COLOR color = IPOD_COLOR_11;
  EXPECT_EQ(session_.GetIPodColor(&color), 0);
  EXPECT_EQ(color, IPOD_COLOR_NONE);
  EXPECT_THAT(DrainSent(), ElementsAre(kRequest, kRequest, kRequest));
  EXPECT_THAT(test::DrainTraceLog(), ::testing::IsEmpty());
}

TEST_F(Color, RefusedRequestFailsWithNone) {
  Answer(kRequest, "FF 55 04 00 02 04 0E E8");
  tagIPOD_COLOR color = IPOD_COLOR_11;
  EXPECT_EQ(session_.GetIPodColor(&color), 0);
  EXPECT_EQ(color, IPOD_COLOR_NONE);
}

TEST_F(Color, AckOfTheRequestPassesForAnUnknownModel) {
  // The exchange succeeds after the silence, with an empty text.
  Answer(kRequest, "FF 55 04 00 02 04 0D E9");
  tagIPOD_COLOR color = IPOD_COLOR_11;
  EXPECT_EQ(session_.GetIPodColor(&color), 1);
  EXPECT_EQ(color, IPOD_COLOR_NONE);
}

}  // namespace
