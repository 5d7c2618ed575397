// SPDX-License-Identifier: MIT
// The tour, step by step.
#include <map>

#include "text/subjects.h"

namespace truth {

namespace {

std::string StepOf(const std::string& title) {
  static const std::pair<const char*, const char*> kTitles[] = {{"Wake the iPod", "identify"},
                                                                {"Ask who it is", "device"},
                                                                {"Browse: artists", "artists"},
                                                                {"Browse: albums", "albums"},
                                                                {"Browse: tracks", "tracks"},
                                                                {"Play the first", "play"},
                                                                {"Pause", "pause"},
                                                                {"Skip to the next", "next"},
                                                                {"Shuffle", "shuffle"},
                                                                {"Close", "close"}};
  for (const auto& [beginning, step] : kTitles) {
    if (title.rfind(beginning, 0) == 0) return step;
  }
  return "";
}

// The first names of a list, and how many there are where they are not all.
void ReadNames(Lines* lines, Json* told) {
  static const std::regex kName("  ([^ ].*)");
  static const std::regex kTotal("  \\.\\.\\. ([0-9]+) .* in all");
  Json names = Json::array();
  std::optional<std::vector<std::string>> total;
  while (!(total = lines->TakeIf(kTotal))) {
    const auto name = lines->TakeIf(kName);
    if (!name) break;
    names.push_back(Named(name->at(1)));
  }
  (*told)["total"] = total ? Number(total->at(1)) : static_cast<int>(names.size());
  (*told)["names"] = names;
}

void ReadStep(const std::string& step, Lines* lines, std::vector<Json>* said) {
  static const std::regex kIdentified("  The iPod accepted us by (.*)\\.");
  static const std::regex kWas("  Shuffle was (.*) and is now (.*)\\.");
  static const std::regex kBack("  It is back to (.*)\\.");
  static const std::regex kClosed("  The port is closed\\.");
  Json told = {{"step", step}};
  if (step == "identify") {
    const auto by = lines->TakeIf(kIdentified);
    if (!by) return;
    told["identified_by"] = by->at(1);
  } else if (step == "device") {
    ReadInfoFacts(lines, &told);
  } else if (step == "artists" || step == "albums" || step == "tracks") {
    ReadNames(lines, &told);
  } else if (step == "shuffle") {
    if (const auto was = lines->TakeIf(kWas)) told["now"] = was->at(2);
    if (!lines->TakeIf(kBack)) return;
  } else if (step == "close") {
    if (!lines->TakeIf(kClosed)) return;
  } else {
    std::vector<Json> events;
    ReadPlayer(lines, &events);
    for (Json& event : events) {
      event["step"] = step;
      said->push_back(event);
    }
    return;
  }
  said->push_back(told);
}

}  // namespace

void ReadTour(Lines* lines, std::vector<Json>* said) {
  static const std::regex kDock("(A simulated iPod .* is docked|The dock is) on .*\\.");
  static const std::regex kStep("[0-9]+\\. (.*)");
  lines->TakeIf(kDock);
  while (!lines->empty()) {
    if (lines->front().empty()) {
      lines->Take();
      continue;
    }
    const auto title = lines->TakeIf(kStep);
    if (!title) return;
    ReadStep(StepOf(title->at(1)), lines, said);
  }
}

}  // namespace truth
