// SPDX-License-Identifier: MIT
// What the player does.
#include <map>

#include "text/subjects.h"

namespace truth {

namespace {

constexpr const char* kClock = "([0-9:]+) of ([0-9:]+)";

void KeepTimes(Json* now, const std::vector<std::string>& groups) {
  (*now)["position_s"] = Seconds(groups.at(1));
  (*now)["length_s"] = Seconds(groups.at(2));
}

// "Artist - Album", or the one of the two that the iPod told.
void KeepOrigin(Json* now, const std::string& origin) {
  const std::size_t dash = origin.find(" - ");
  if (dash == std::string::npos) {
    (*now)["origin"] = origin;
    return;
  }
  (*now)["artist"] = origin.substr(0, dash);
  (*now)["album"] = origin.substr(dash + 3);
}

// A track with its times in one of the lines below.
bool ReadTrack(Lines* lines, Json* now) {
  static const std::regex kTitle("(Playing|Paused|Stopped|Winding forward|Winding back) +(.*)");
  static const std::regex kPlace(std::string(" {9}") + kClock + ", track ([0-9]+) of the list");
  static const std::regex kOrigin(" {9}(.*)");
  static const std::string kVideo = "  (video)";
  const auto title = lines->TakeIf(kTitle);
  if (!title) return false;
  std::string state = title->at(1);
  state.front() = static_cast<char>(state.front() - 'A' + 'a');
  std::string name = title->at(2);
  const std::size_t end = name.size() - std::min(name.size(), kVideo.size());
  const bool video = name.compare(end, std::string::npos, kVideo) == 0;
  if (video) name.erase(end);
  *now = {{"state", state}, {"video", video}};
  if (!Named(name).is_null()) (*now)["title"] = Named(name);
  auto place = lines->TakeIf(kPlace);
  if (!place) {
    const auto origin = lines->TakeIf(kOrigin);
    if (origin) KeepOrigin(now, origin->at(1));
    place = lines->TakeIf(kPlace);
  }
  if (!place) return true;
  KeepTimes(now, *place);
  (*now)["index"] = Number(place->at(3)) - 1;
  return true;
}

}  // namespace

void ReadPlayer(Lines* lines, std::vector<Json>* said) {
  static const std::regex kPosition(std::string(" {9}") + kClock);
  while (!lines->empty()) {
    Json now;
    if (lines->front() == "Stopped" || lines->front() == "Nothing is playing") {
      const bool stopped = lines->Take() == "Stopped";
      said->push_back(stopped ? Json{{"state", "stopped"}} : Json{{"plays", nullptr}});
    } else if (ReadTrack(lines, &now)) {
      said->push_back(now);
    } else if (const auto position = said->empty() ? std::nullopt : lines->TakeIf(kPosition)) {
      said->push_back(said->back());
      KeepTimes(&said->back(), *position);
    } else {
      return;
    }
  }
}

void ReadLegacyPlayer(Lines* lines, std::vector<Json>* said) {
  static const std::regex kTime(kClock);
  static const std::map<std::string, const char*> kStates = {{"Stopped", "stopped"},
                                                             {"Playing", "playing"},
                                                             {"Paused", "paused"},
                                                             {"Fast Forward", "winding forward"},
                                                             {"Fast Rewind", "winding back"}};
  Json now = Json::object();
  while (const auto fact = lines->TakeFact()) {
    const auto& [label, value] = *fact;
    if (label == "State") {
      now["state"] = kStates.count(value) == 0 ? value : kStates.at(value);
    } else if (label == "Title" && !Named(value).is_null()) {
      now["title"] = Named(value);
    } else if (label == "Video" && !Named(value).is_null()) {
      now["video"] = value == "yes";
    } else if (label == "Time") {
      Lines time(value);
      if (const auto groups = time.TakeIf(kTime)) KeepTimes(&now, *groups);
    }
  }
  if (!now.empty()) said->push_back(now);
}

}  // namespace truth
