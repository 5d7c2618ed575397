// SPDX-License-Identifier: MIT
// The workout document as the tests know it: plain texts of ordinary values, in UTF-8, written
// without the library.
#pragma once

#include <string>
#include <vector>

namespace test {

/// A text as a host gives it, and what is to be stored of it.
struct Name {
  std::wstring given;
  std::string stored;
};

struct Equipment {
  Name manufacturer_id;
  Name manufacturer_name;
  Name model;
  Name serial_number;
  int type;
  double weight_kg;
};

struct Interval {
  int event;
  int seconds;
  double kcal;
  double distance;
  int distance_type;
  double speed;
  int speed_type;
  double incline;
  int bpm;
  int level;
};

std::string HeaderText(const Equipment& equipment);
std::string IntervalText(const Interval& interval);
/// Of the workout that ended with this interval.
std::string SummaryText(const Interval& last);

}  // namespace test
