// SPDX-License-Identifier: MIT
// Prints the library's figures.
#include <cstdio>
#include <thread>

#include "figures.h"

int main(int argc, char** argv) {
  std::printf("ipodcomm on %u cores. Figures depend on the machine; floors and goals do not.\n",
              std::thread::hardware_concurrency());
  bench::MeasureFrames(&argc, argv);
  bench::MeasureSession();
  bench::MeasureLegacy();
  bench::MeasurePort();
  bench::MeasureFootprint();
  return 0;
}
