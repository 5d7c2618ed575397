// SPDX-License-Identifier: MIT
// Decimal fractions: the digits, halves between two of them, and what is no number.
#include "protocol/decimal.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <limits>
#include <string>

namespace {

using ipodcomm::Decimal;

std::wstring Text(double value, int decimals) { return Decimal(value, decimals).text(); }

TEST(Decimal, HasTheDecimalsAskedFor) {
  EXPECT_EQ(Text(80.5, 1), L"80.5");
  EXPECT_EQ(Text(80, 2), L"80.00");
  EXPECT_EQ(Text(-1.5, 6), L"-1.500000");
  EXPECT_EQ(Text(0.04, 1), L"0.0");
  EXPECT_EQ(Text(1234567.8, 1), L"1234567.8");
  EXPECT_EQ(Text(7.5, 0), L"8");
}

TEST(Decimal, HalfwayBetweenTwoEndsWithTheEvenDigit) {
  EXPECT_EQ(Text(0.125, 2), L"0.12");
  EXPECT_EQ(Text(0.375, 2), L"0.38");
  EXPECT_EQ(Text(0.25, 1), L"0.2");
  EXPECT_EQ(Text(0.75, 1), L"0.8");
  EXPECT_EQ(Text(-0.125, 2), L"-0.12");
}

// As doubles 0.15, 0.35, 2.675 and 1.115 lie a little below the half, 0.45 a little above.
TEST(Decimal, IsRoundedByItsExactValue) {
  EXPECT_EQ(Text(0.15, 1), L"0.1");
  EXPECT_EQ(Text(0.35, 1), L"0.3");
  EXPECT_EQ(Text(2.675, 2), L"2.67");
  EXPECT_EQ(Text(1.115, 2), L"1.11");
  EXPECT_EQ(Text(0.45, 1), L"0.5");
}

TEST(Decimal, LargestNumberIsWholeAndTerminated) {
  const std::wstring largest = Text(-std::numeric_limits<double>::max(), 6);
  EXPECT_EQ(largest.size(), 1U + 309U + 7U);
  EXPECT_EQ(largest.substr(0, 8), L"-1797693");
  EXPECT_EQ(largest.substr(largest.size() - 7), L".000000");
  EXPECT_EQ(Text(std::numeric_limits<double>::denorm_min(), 6), L"0.000000");
}

TEST(Decimal, WhatIsNoNumberIsNamed) {
  EXPECT_EQ(Text(std::numeric_limits<double>::infinity(), 1), L"inf");
  EXPECT_EQ(Text(-std::numeric_limits<double>::infinity(), 1), L"-inf");
  EXPECT_EQ(Text(std::numeric_limits<double>::quiet_NaN(), 1), L"nan");
}

}  // namespace
