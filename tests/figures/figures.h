// SPDX-License-Identifier: MIT
// How long a host waits in virtual time, beside the least that the line and the iPod allow.
#pragma once

#include <cstdint>

#include "ipodcomm/IpodTypes.h"

namespace test {

/// Virtual time, in microseconds. The floor is the time in which bytes were on the line, at 57600
/// baud and 10.5 bits a byte, or the iPod was preparing an answer (8 ms). Nothing of what the host
/// did not get is in it: a measurement that failed has taken nothing.
struct Figure {
  std::int64_t taken_us = 0;
  std::int64_t floor_us = 0;
  std::int64_t received_bytes = 0;

  double Ratio() const {
    return static_cast<double>(taken_us) / static_cast<double>(floor_us != 0 ? floor_us : 1);
  }
};

/// The first `count` of the names of a library whose names have 20 characters each, in one request.
Figure MeasureNames(const tagIPOD_CONDUCT& conduct, unsigned long count);
/// The slowest of 100 questions for the shuffle mode, each on a line that has been quiet for long.
Figure MeasureExchange(const tagIPOD_CONDUCT& conduct);
/// The whole identification by tokens. The pauses that it makes on purpose are in its floor.
Figure MeasureIdentification(const tagIPOD_CONDUCT& conduct);
/// A workout of so many intervals, written back to back.
Figure MeasureWorkout(const tagIPOD_CONDUCT& conduct, int intervals);

}  // namespace test
