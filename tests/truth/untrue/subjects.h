// SPDX-License-Identifier: MIT
// What is untrue in what was said on one subject; empty when nothing is.
#pragma once

#include "untrue/question.h"

namespace truth {

std::string UntrueInfo(const Question& question);
std::string UntrueLegacyInfo(const Question& question);
std::string UntrueLingoes(const Question& question);
std::string UntrueSports(const Question& question);
std::string UntrueList(const Question& question);
std::string UntruePlayer(const Question& question);
std::string UntrueEvents(const Question& question);
std::string UntrueMode(const Question& question);
std::string UntruePreferences(const Question& question);
std::string UntrueUserData(const Question& question);
std::string UntrueWorkout(const Question& question);
std::string UntrueTour(const Question& question);
std::string UntrueSelfTest(const Question& question);

}  // namespace truth
