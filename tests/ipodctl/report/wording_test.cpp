// SPDX-License-Identifier: MIT
// Texts, numbers and dates in every language of the pages.
#include "report/wording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "documents.h"
#include "report/page.h"
#include "report/workout_reader.h"

using namespace ipodctl;
using ::testing::AllOf;
using ::testing::HasSubstr;

namespace {

constexpr Language kAll[] = {Language::kEnglish, Language::kGerman, Language::kFrench,
                             Language::kSpanish};

std::set<char> PlacesIn(const std::string& text) {
  std::set<char> places;
  for (std::size_t at = text.find('{'); at != std::string::npos; at = text.find('{', at + 1)) {
    places.insert(text.at(at + 1));
  }
  return places;
}

TEST(Phrases, AreAllTranslatedIntoEveryLanguage) {
  for (int i = 0; i < static_cast<int>(Phrase::kCount); ++i) {
    const auto phrase = static_cast<Phrase>(i);
    ASSERT_NE(PhraseText(phrase, Language::kEnglish), nullptr) << i;
    const std::string english = PhraseText(phrase, Language::kEnglish);
    for (const Language language : kAll) {
      const char* const text = PhraseText(phrase, language);
      ASSERT_NE(text, nullptr) << english;
      EXPECT_NE(std::string(text), "") << english;
      EXPECT_EQ(PlacesIn(text), PlacesIn(english)) << text;
    }
  }
  EXPECT_EQ(LanguageCodes().size(), kLanguages);
}

TEST(Wording, FillsPlacesOnceAndInAnyOrder) {
  EXPECT_EQ(Filled("{2} of {1}", {"a", "b"}), "b of a");
  EXPECT_EQ(Filled("{1} {1}", {"{2}", "b"}), "{2} {2}");
  EXPECT_EQ(Filled("{3} {", {"a"}), "{3} {");
}

TEST(Wording, WritesNumbersAsTheLanguageDoes) {
  const auto fixed = [](Language language, double number) {
    return Wording(language).Fixed(number, 2);
  };
  EXPECT_EQ(fixed(Language::kEnglish, 1234567.5), "1,234,567.50");
  EXPECT_EQ(fixed(Language::kGerman, 1234567.5), "1.234.567,50");
  EXPECT_EQ(fixed(Language::kFrench, 1234567.5), "1\u202F234\u202F567,50");
  EXPECT_EQ(fixed(Language::kSpanish, 1234567.5), "1.234.567,50");
  EXPECT_EQ(fixed(Language::kSpanish, 1234.5), "1234,50");
  EXPECT_EQ(fixed(Language::kGerman, -0.25), "-0,25");
  EXPECT_EQ(fixed(Language::kGerman, 1.25e10), "1,2e+10");
  EXPECT_EQ(Wording(Language::kGerman).Short(12.5, 2), "12,5");
  EXPECT_EQ(Wording(Language::kGerman).Short(2e7, 0), "2e+07");
}

TEST(Wording, CountsAsTheLanguageDoes) {
  const auto count = [](Language language, std::uint64_t number) {
    return Wording(language).Count(number, Phrase::kInterval, Phrase::kIntervals);
  };
  EXPECT_EQ(count(Language::kEnglish, 0), "0 intervals");
  EXPECT_EQ(count(Language::kEnglish, 1), "1 interval");
  EXPECT_EQ(count(Language::kEnglish, 1200), "1,200 intervals");
  EXPECT_EQ(count(Language::kFrench, 0), "0 intervalle");
  EXPECT_EQ(count(Language::kFrench, 2), "2 intervalles");
}

TEST(Wording, WritesDatesAsTheLanguageDoes) {
  EXPECT_EQ(Wording(Language::kEnglish).Date({2026, 3, 1}), "1 March 2026");
  EXPECT_EQ(Wording(Language::kGerman).Date({2026, 3, 1}), "1. März 2026");
  EXPECT_EQ(Wording(Language::kFrench).Date({2026, 3, 1}), "1er mars 2026");
  EXPECT_EQ(Wording(Language::kFrench).Date({2026, 12, 31}), "31 décembre 2026");
  EXPECT_EQ(Wording(Language::kSpanish).Date({2026, 1, 2}), "2 de enero de 2026");
}

TEST(Wording, MakesTheWholePageOfALanguage) {
  const WorkoutDocument document = ParseWorkoutDocument(report::kRun);
  Presentation presentation;
  presentation.words = Wording(Language::kGerman);
  const std::string page = RenderPage(document, FiguresOf(document), "run.xml", presentation);
  EXPECT_THAT(page,
              AllOf(HasSubstr("<html lang=\"de\""), HasSubstr("<h1>Training auf dem Laufband</h1>"),
                    HasSubstr("<b>0,61</b> <span class=\"unit\">km</span>"),
                    HasSubstr(">Herzfrequenz</tspan>"), HasSubstr("<bdi>72,5 kg</bdi>"),
                    HasSubstr("Von ipodctl erstellt aus <bdi>run.xml</bdi>, 5 Intervalle.")));
  for (const char* english : {">Summary<", ">Time", "average", ">Pace", "interval", "Paused"}) {
    EXPECT_EQ(page.substr(0, page.find("<script>")).find(english), std::string::npos) << english;
  }
}

}  // namespace
