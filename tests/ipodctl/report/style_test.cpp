// SPDX-License-Identifier: MIT
// The colours of the pages: whether texts stand out from what is behind them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

#include "report/page_style.h"

namespace {

using Colours = std::map<std::string, std::string>;  // "ink" is "#1a1f26"

// What the first rule for :root behind `start` says.
Colours ColoursBehind(const std::string& start) {
  const std::string style = ipodctl::kPageStyle;
  const std::size_t root = style.find(":root {", style.find(start));
  const std::string rule = style.substr(root, style.find('}', root) - root);
  Colours colours;
  for (std::size_t at = rule.find("--"); at != std::string::npos; at = rule.find("--", at + 1)) {
    const std::size_t colon = rule.find(':', at);
    colours[rule.substr(at + 2, colon - at - 2)] = rule.substr(colon + 2, 7);
  }
  return colours;
}

double Linear(const std::string& hex) {
  const double share = std::stoi(hex, nullptr, 16) / 255.0;
  return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

double Luminance(const std::string& colour) {
  return 0.2126 * Linear(colour.substr(1, 2)) + 0.7152 * Linear(colour.substr(3, 2)) +
         0.0722 * Linear(colour.substr(5, 2));
}

double Contrast(const std::string& one, const std::string& other) {
  const auto [low, high] = std::minmax({Luminance(one), Luminance(other)});
  return (high + 0.05) / (low + 0.05);
}

void ExpectLegible(const Colours& colours) {
  for (const char* back : {"page", "card", "note"}) {
    for (const char* text : {"ink", "soft"}) {
      EXPECT_GE(Contrast(colours.at(text), colours.at(back)), 4.5) << text << " on " << back;
    }
  }
  // Their names are written in them, too; and links in that of the speed.
  for (const char* course : {"heart", "speed", "cadence", "incline", "distance"}) {
    EXPECT_GE(Contrast(colours.at(course), colours.at("card")), 4.5) << course;
  }
  EXPECT_GE(Contrast(colours.at("speed"), colours.at("page")), 4.5);
}

TEST(PageStyle, IsLegibleInTheLight) {
  EXPECT_NEAR(Contrast("#777777", "#ffffff"), 4.48, 0.005);
  EXPECT_NEAR(Contrast("#000000", "#ffffff"), 21, 0.005);
  ExpectLegible(ColoursBehind(""));
}

TEST(PageStyle, IsLegibleInTheDark) { ExpectLegible(ColoursBehind("prefers-color-scheme: dark")); }

TEST(PageStyle, IsLegibleOnPaper) {
  Colours colours = ColoursBehind("@media print");
  EXPECT_EQ(colours.at("page"), "#ffffff");
  colours.merge(ColoursBehind(""));
  ExpectLegible(colours);
}

}  // namespace
