// SPDX-License-Identifier: MIT
// What the library takes of a console: its size on disk.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "figures.h"

namespace {

long StrippedSize(const std::string& library) {
  const std::string stripped = "/tmp/ipodcomm_bench_" + std::to_string(::getpid()) + ".so";
  const std::string command = "strip -o " + stripped + " '" + library + "'";
  if (std::system(command.c_str()) != 0) return 0;
  struct stat status = {};
  ::stat(stripped.c_str(), &status);
  ::unlink(stripped.c_str());
  return status.st_size;
}

}  // namespace

void bench::MeasureFootprint() {
  constexpr double kKilo = 1000;
  PrintHeading("Footprint");
  PrintFigure("stripped shared library",
              Number(static_cast<double>(StrippedSize(IPODCOMM_SHARED_LIBRARY)) / kKilo, 0) + " kB",
              "goal: 220 kB");
}
