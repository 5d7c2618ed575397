// SPDX-License-Identifier: MIT
// Workouts, by the files on the iPod.
#include <algorithm>

#include "simulator/files/workout_document.h"
#include "untrue/subjects.h"

namespace truth {

namespace {

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

// What the accessory wrote; the iPod itself adds to it.
std::string Written(const std::string& content) {
  return content.substr(0, content.rfind('\n', content.find("<iPodInfo")) + 1);
}

}  // namespace

// A file whose opening was answered too late stays empty beside the one that was opened then.
std::string UntrueWorkout(const Question& question) {
  const ipodsim::FeatureFiles& files = question.ipod.feature_files();
  const std::vector<std::string> open = question.ipod.open_feature_files();
  std::string untrue = "no file";
  for (const std::string& name : files.Names()) {
    if (std::find(open.begin(), open.end(), name) != open.end()) continue;
    const std::string content = files.Read(name);
    const ipodsim::WorkoutDocument document(Written(content));
    untrue = document.problem();
    if (untrue.empty()) return Expect(question.last(), "intervals", CountOf(content, "<interval>"));
  }
  return untrue;
}

}  // namespace truth
