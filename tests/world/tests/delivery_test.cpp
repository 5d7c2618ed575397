// SPDX-License-Identifier: MIT
// The manners in which a device's bytes get on their way.
#include "world/line/delivery.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <utility>

#include "world/clock.h"

namespace ipodcomm::virtual_platform {
namespace {

using testing::ElementsAre;
using testing::Pair;

using Bytes = Delivery::Bytes;

// When which bytes go out of what is sent at 0 and at 1 ms.
std::vector<std::pair<std::int64_t, Bytes>> Pieces(const char* manner) {
  Delivery delivery;
  delivery.Choose(Delivery::ByName(manner));
  delivery.Add({1, 2, 3}, 0);
  delivery.Add({4}, kMillisecond);
  std::vector<std::pair<std::int64_t, Bytes>> pieces;
  while (delivery.NextEvent() != kNever) {
    const std::int64_t due_us = delivery.NextEvent();
    pieces.emplace_back(due_us, delivery.PopPiece());
  }
  return pieces;
}

TEST(Delivery, IsAsSent) {
  EXPECT_THAT(Pieces("as-sent"), ElementsAre(Pair(0, Bytes{1, 2, 3}), Pair(1000, Bytes{4})));
}

TEST(Delivery, IsByteByByte) {
  EXPECT_THAT(Pieces("byte-by-byte"), ElementsAre(Pair(3000, Bytes{1}), Pair(6000, Bytes{2}),
                                                  Pair(9000, Bytes{3}), Pair(9000, Bytes{4})));
}

TEST(Delivery, IsSplitAndKeepsTheOrder) {
  EXPECT_THAT(Pieces("split"),
              ElementsAre(Pair(0, Bytes{1, 2}), Pair(40'000, Bytes{3}), Pair(40'000, Bytes{4})));
}

TEST(Delivery, IsLate) {
  EXPECT_THAT(Pieces("late"), ElementsAre(Pair(200'000, Bytes{1, 2, 3}), Pair(201'000, Bytes{4})));
}

TEST(Delivery, IsBehindJunkWithoutASyncByte) {
  const Bytes junk = {0x55, 0x00, 0x02, 0xFE};
  EXPECT_THAT(Pieces("junk"), ElementsAre(Pair(0, junk), Pair(1000, Bytes{1, 2, 3}),
                                          Pair(1000, junk), Pair(2000, Bytes{4})));
}

TEST(Delivery, OfNothingIsNothing) {
  Delivery delivery;
  delivery.Choose(Delivery::ByName("junk"));
  delivery.Add({}, 0);
  EXPECT_EQ(delivery.NextEvent(), kNever);
}

TEST(Delivery, ThatIsCutLosesWhatHasNotGoneOut) {
  Delivery delivery;
  delivery.Choose(Delivery::ByName("late"));
  delivery.Add({1}, 0);
  delivery.Cut();
  EXPECT_EQ(delivery.NextEvent(), kNever);
}

TEST(Delivery, HasNoOtherName) { EXPECT_THROW(Delivery::ByName("quickly"), std::invalid_argument); }

}  // namespace
}  // namespace ipodcomm::virtual_platform
