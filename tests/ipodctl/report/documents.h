// SPDX-License-Identifier: MIT
// Workout documents as consoles write them.
#pragma once

#include <string>

namespace report {

/// A run of four minutes with one pause, as consoles write it today.
extern const char* const kRun;
/// A ride as older consoles write it: the gym, whole calories, six decimals, values that are 0.
extern const char* const kOlderRide;

/// kRun up to and including the first occurrence of `text`.
std::string RunUpTo(const std::string& text);
/// A document that holds these elements.
std::string Document(const std::string& elements);
/// An interval at `seconds` that holds these elements besides.
std::string IntervalAt(int seconds, const std::string& elements, const std::string& event = {});
/// The same with a distance.
std::string KmAt(int seconds, const char* km, const std::string& event = {});
/// `text` with the first occurrence of `part` replaced.
std::string Replaced(std::string text, const std::string& part, const std::string& replacement);

}  // namespace report
