// SPDX-License-Identifier: MIT
// The text of the workout document. Nothing is sent here.
#pragma once

#include <cstddef>

#include "ipodcomm/IpodTypes.h"
#include "protocol/decimal.h"
#include "session/heap_array.h"

namespace ipodcomm {

struct WorkoutHeader {
  const wchar_t* manufacturer_id;
  const wchar_t* manufacturer_name;
  const wchar_t* model;
  const wchar_t* serial_number;
  tagIPOD_EQUIPMENT_TYPE equipment;  ///< an unknown one has no line
  double weight_kg;
};

struct WorkoutInterval {
  tagIPOD_INTERVAL_TYPE event;  ///< an unknown one has no line
  int seconds;
  double kcal;
  double distance;
  tagIPOD_DISTANCE_TYPE distance_type;
  double speed;
  tagIPOD_SPEED_TYPE speed_type;
  double incline;
  int bpm;    ///< 0 for none
  int level;  ///< -1 for none
};

struct WorkoutSummary {
  int seconds;
  double kcal;
  double distance;
  tagIPOD_DISTANCE_TYPE distance_type;
  double speed;
  int bpm;  ///< 0 for none
};

/// A line of the header. The texts in it have no bound.
struct HeaderLine {
  const wchar_t* format;
  const wchar_t* text;  ///< for the format's `%s`; empty when it has none

  /// The whole line; null when there is no memory for it.
  HeapArray<wchar_t> Whole() const;
};

/// The lines of a header, which it refers to.
class HeaderLines {
 public:
  explicit HeaderLines(const WorkoutHeader& header);
  HeaderLines(const HeaderLines&) = delete;
  HeaderLines& operator=(const HeaderLines&) = delete;

  const HeaderLine* begin() const { return lines_; }
  const HeaderLine* end() const { return lines_ + count_; }

 private:
  static constexpr std::size_t kMaxLines = 13;

  void Add(const wchar_t* format, const wchar_t* text = L"");

  Decimal weight_;
  HeaderLine lines_[kMaxLines] = {};
  std::size_t count_ = 0;
};

/// Characters that one write can carry of a block.
constexpr std::size_t kMaxBlockChars = 512;

/// What an interval or a summary writes, in one piece.
struct BlockText {
  wchar_t chars[kMaxBlockChars + 1];  // with a terminator
};

/// Cut to 511 characters.
BlockText IntervalBlock(const WorkoutInterval& interval);
/// Cut to 512 characters.
BlockText SummaryBlock(const WorkoutSummary& summary);

}  // namespace ipodcomm
