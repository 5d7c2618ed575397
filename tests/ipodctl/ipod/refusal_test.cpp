// SPDX-License-Identifier: MIT
// The words for an iPod's refusals.
#include "ipod/refusal.h"

#include <gtest/gtest.h>

using namespace ipodctl;

namespace {

TEST(Refusal, TellsTheStatusAndItsName) {
  EXPECT_EQ(StatusText(4), "status 4, unknown to it");
  EXPECT_EQ(StatusText(7), "status 7, accessory not authenticated");
}

TEST(Refusal, TellsAStatusWithoutANameByItsNumber) { EXPECT_EQ(StatusText(31), "status 31"); }

TEST(Refusal, AdmitsThatNoStatusWasTold) { EXPECT_EQ(StatusText(0), "no status told"); }

TEST(Refusal, PutsTheStatusBeforeTheAdvice) {
  EXPECT_EQ(Refusal("pause", 1), "the iPod refused to pause (status 1, command failed)");
  EXPECT_EQ(Refusal("wind; it is stopped", 2),
            "the iPod refused to wind (status 2, out of resources); it is stopped");
}

}  // namespace
