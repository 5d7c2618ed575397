// SPDX-License-Identifier: MIT
// How ipodctl makes names fit to stand in a workout document.
#include "workout/workout_header.h"

#include <gtest/gtest.h>

using namespace ipodctl;

namespace {

TEST(WorkoutHeader, EscapesMarkupAndKeepsOtherNames) {
  EXPECT_EQ(EscapedText("Fit & <Strong> \"Co\""), "Fit &amp; &lt;Strong&gt; \"Co\"");
  EXPECT_EQ(EscapedText("Größe 橋 🎧"), "Größe 橋 🎧");
  EXPECT_EQ(EscapedText("a]]>b"), "a]]&gt;b");
}

TEST(WorkoutHeader, ReplacesWhatNoDocumentMayHold) {
  EXPECT_EQ(EscapedText("a\tb\x1b"
                        "c"),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD"
            "c");
  EXPECT_EQ(EscapedText("\xEF\xBF\xBF|\xEF\xBF\xBE"), "\xEF\xBF\xBD|\xEF\xBF\xBD");
  EXPECT_EQ(EscapedText("cut \xE6\xA9"), "cut \xEF\xBF\xBD\xEF\xBF\xBD");
  EXPECT_EQ(EscapedText("\xED\xA0\x80|\xC0\x80|\xF4\x90\x80\x80").find('\x80'), std::string::npos);
}

}  // namespace
