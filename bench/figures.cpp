// SPDX-License-Identifier: MIT
#include "figures.h"

#include <cstdio>

namespace bench {

void PrintHeading(const std::string& heading) { std::printf("\n%s\n", heading.c_str()); }

void PrintFigure(const std::string& name, const std::string& measured, const std::string& against) {
  std::printf("  %-44s %16s   %s\n", name.c_str(), measured.c_str(), against.c_str());
  std::fflush(stdout);
}

std::string Number(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

}  // namespace bench
