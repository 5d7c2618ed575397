// SPDX-License-Identifier: MIT
// Recorded workouts: what is no such file is refused with a sentence.
#include <sstream>

#include "console/failure.h"
#include "fuzz.h"
#include "workout/csv_recording.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream stream(std::string(reinterpret_cast<const char*>(data), size));
  std::vector<std::string> unknown_columns;
  try {
    ipodctl::ReadCsvRecording(stream, "ride.csv", *ipodctl::EquipmentByName("bike"),
                              &unknown_columns);
  } catch (const ipodctl::CommandFailure& failure) {
    fuzz::Require(failure.what()[0] != '\0');
  }
  return 0;
}
