// SPDX-License-Identifier: MIT
// What hosts wait for, in virtual time on a line of 57600 baud: exact, whatever the machine does.
#include <string>

#include "figures.h"
#include "figures/figures.h"

namespace {

using bench::Number;
using bench::PrintFigure;
using test::Figure;

std::string Milliseconds(std::int64_t time_us) {
  return Number(static_cast<double>(time_us) / 1000, 1) + " ms";
}

void PrintBesideFloor(const std::string& name, const Figure& figure, const std::string& goal) {
  PrintFigure(name, Milliseconds(figure.taken_us),
              "floor: " + Milliseconds(figure.floor_us) + ", " + Number(figure.Ratio(), 3) +
                  " times that; goal: " + goal);
}

}  // namespace

void bench::MeasureLine() {
  constexpr const char* kTwentieth = "1.05 times";
  PrintHeading("The fast conduct on a line of 57600 baud, in virtual time");
  const Figure thousand = test::MeasureNames(IPOD_CONDUCT_FAST, 1000);
  const unsigned long blocks = LiveBlockCount();
  const Figure ten_thousand = test::MeasureNames(IPOD_CONDUCT_FAST, 10000);
  PrintBesideFloor("1,000 names of 20 characters", thousand, kTwentieth);
  PrintBesideFloor("10,000 names of 20 characters", ten_thousand, "ten times 1,000, within 1 %");
  PrintFigure("  blocks of memory more afterwards",
              Number(static_cast<double>(LiveBlockCount()) - static_cast<double>(blocks), 0),
              "goal: 0");
  PrintBesideFloor("an exchange on a quiet line, at the worst",
                   test::MeasureExchange(IPOD_CONDUCT_FAST), "2.5 ms more");
  PrintBesideFloor("a whole identification", test::MeasureIdentification(IPOD_CONDUCT_FAST),
                   kTwentieth);
  PrintBesideFloor("a workout of 3,600 intervals", test::MeasureWorkout(IPOD_CONDUCT_FAST, 3600),
                   kTwentieth);

  PrintHeading("The default conduct there");
  Figure names = test::MeasureNames(IPOD_CONDUCT_FIELD, 100);
  names.floor_us = (20 + 8 + 2 * names.received_bytes) * 1000;  // its pauses, and the iPod's answer
  PrintBesideFloor("100 names of 20 characters", names, "1.02 times");
}
