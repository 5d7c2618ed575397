// SPDX-License-Identifier: MIT
// What goes into the workout's document on the iPod: names made fit for it, and how long each piece
// is. The library writes the pieces themselves.
#pragma once

#include <cstddef>
#include <string>

#include "workout/recording.h"

namespace ipodctl {

/// What the document says about the equipment and its user.
struct DocumentHeader {
  std::string manufacturer_id;  // UTF-8, escaped
  std::string manufacturer_name;
  std::string model;
  std::string serial_number;
  tagIPOD_EQUIPMENT_TYPE equipment = IPOD_EQUIPMENT_TYPE_TREADMILL;
  double weight_kg = 0;
};

/// UTF-8 text as it may stand between two tags: markup characters escaped; characters that no
/// document may hold, and bytes that are no UTF-8, replaced.
std::string EscapedText(const std::string& utf8);

/// A frame's length byte leaves room for this much of a file, its transaction identifier included.
constexpr std::size_t kLargestPiece = 246;

/// Sizes in bytes.
struct HeaderSize {
  std::size_t total = 0;
  std::size_t largest_line = 0;
};
HeaderSize SizeOfHeader(const DocumentHeader& header);
std::size_t SizeOfInterval(const Recording& recording, const Interval& interval);
std::size_t SizeOfSummary(const Recording& recording, const Summary& summary);

}  // namespace ipodctl
