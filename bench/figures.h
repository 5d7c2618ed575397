// SPDX-License-Identifier: MIT
// How figures are printed: one line each, what was measured beside what it is measured against.
#pragma once

#include <string>

namespace bench {

void PrintHeading(const std::string& heading);
/// @param against the floor or the goal, empty for none
void PrintFigure(const std::string& name, const std::string& measured, const std::string& against);

/// A number with `decimals` digits behind the point.
std::string Number(double value, int decimals);

// The groups of figures, each in its own file.
void MeasureFrames(int* argc, char** argv);
void MeasureSession();
void MeasureLegacy();
void MeasureFootprint();
void MeasureLine();
void MeasurePort();

/// Heap allocations of this program so far.
unsigned long AllocationCount();
/// Those of them that have not been released.
unsigned long LiveBlockCount();

}  // namespace bench
