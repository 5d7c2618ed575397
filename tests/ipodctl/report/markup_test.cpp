// SPDX-License-Identifier: MIT
// Text and numbers on the page.
#include "report/markup.h"

#include <gtest/gtest.h>

using namespace ipodctl;

namespace {

constexpr const char* kReplaced = "\xEF\xBF\xBD";

TEST(Markup, EscapesEveryCharacterThatMarksUp) {
  EXPECT_EQ(Escaped("a<b>&\"c'd"), "a&lt;b&gt;&amp;&quot;c&#39;d");
  EXPECT_EQ(Escaped("</title><script>"), "&lt;/title&gt;&lt;script&gt;");
  EXPECT_EQ(Escaped(""), "");
}

TEST(Markup, KeepsTextOfEveryPlane) {
  const std::string text = "S\xC3\xB6hne \xE6\xA9\x8B \xF0\x9F\x8E\xA7 \xED\x9F\xBF \xEF\xBF\xBD";
  EXPECT_EQ(Escaped(text), text);
}

TEST(Markup, ReplacesWhatIsNoText) {
  for (const char* bytes : {"\x80", "\xC3", "\xFF", "\xF5", "\xC1"}) {
    EXPECT_EQ(Escaped(std::string("a") + bytes + "b"), std::string("a") + kReplaced + "b");
  }
  EXPECT_EQ(Escaped("\xC0\x80"), std::string(kReplaced) + kReplaced);
  EXPECT_EQ(Escaped("\xED\xA0\x80"), std::string(kReplaced) + kReplaced + kReplaced);
  EXPECT_EQ(Escaped("\xF4\x90\x80\x80").size(), 12U);
  EXPECT_EQ(Escaped("\xE2\x82"), std::string(kReplaced) + kReplaced);
  EXPECT_EQ(Escaped("\xEF\xBF\xBE"), std::string(kReplaced) + kReplaced + kReplaced);
}

TEST(Markup, ReplacesControlCharacters) {
  EXPECT_EQ(Escaped("a\x1b[31m\n"), std::string("a") + kReplaced + "[31m" + kReplaced);
  EXPECT_EQ(Escaped("a\xC2\x85z"), std::string("a") + kReplaced + "z");
}

TEST(Markup, WritesNumbersInFullOrShort) {
  EXPECT_EQ(Fixed(12.5, 2), "12.50");
  EXPECT_EQ(Fixed(9999999, 0), "9999999");
  EXPECT_EQ(Fixed(1.25e10, 2), "1.2e+10");
  EXPECT_EQ(Short(12.5, 2), "12.5");
  EXPECT_EQ(Short(12, 2), "12");
  EXPECT_EQ(Short(100, 0), "100");
  EXPECT_EQ(Short(2e7, 2), "2e+07");
}

TEST(Markup, WritesTimesToTheNearestSecond) {
  EXPECT_EQ(ClockText(0), "0:00");
  EXPECT_EQ(ClockText(59.4), "0:59");
  EXPECT_EQ(ClockText(59.5), "1:00");
  EXPECT_EQ(ClockText(3723), "1:02:03");
}

}  // namespace
