// SPDX-License-Identifier: MIT
// What a command prints for people, read as what it prints for machines: with the same members, but
// times in whole seconds (length_s, position_s).
#pragma once

#include "judge.h"
#include "text/lines.h"

namespace ipodctl {
struct Options;
}  // namespace ipodctl

namespace truth {

/// Reads what a command printed. @return the first line that is not understood; empty when none is
std::string ReadText(const ipodctl::Options& options, const std::string& text,
                     std::vector<Json>* said);

// Each takes lines for as long as it understands them.

void ReadInfo(Lines* lines, std::vector<Json>* said);
/// The facts of an iPod, as far as they go, into `info`.
void ReadInfoFacts(Lines* lines, Json* info);
void ReadOverview(Lines* lines, std::vector<Json>* said);
void ReadList(Lines* lines, std::vector<Json>* said);
void ReadPlayer(Lines* lines, std::vector<Json>* said);
void ReadLegacyPlayer(Lines* lines, std::vector<Json>* said);
void ReadMode(Lines* lines, std::vector<Json>* said);
void ReadPreferences(Lines* lines, std::vector<Json>* said);
void ReadUserData(Lines* lines, std::vector<Json>* said);
void ReadWorkout(Lines* lines, std::vector<Json>* said);
void ReadTour(Lines* lines, std::vector<Json>* said);
void ReadSelfTest(Lines* lines, std::vector<Json>* said);

}  // namespace truth
