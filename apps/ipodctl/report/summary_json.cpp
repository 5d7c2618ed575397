// SPDX-License-Identifier: MIT
// Names the figures of a workout.
#include "report/summary_json.h"

#include <nlohmann/json.hpp>

namespace ipodctl {

namespace {

using Json = nlohmann::ordered_json;

void AddText(const char* name, const std::string& text, Json* json) {
  if (!text.empty()) (*json)[name] = text;
}

Json EquipmentJson(const EquipmentInfo& equipment) {
  Json json = Json::object();
  AddText("type", equipment.type, &json);
  AddText("manufacturer_id", equipment.manufacturer_id, &json);
  AddText("manufacturer_name", equipment.manufacturer_name, &json);
  AddText("model", equipment.model, &json);
  AddText("serial_number", equipment.serial_number, &json);
  AddText("gym_name", equipment.gym_name, &json);
  AddText("gym_location", equipment.gym_location, &json);
  return json;
}

Json ProblemJson(const DocumentProblem& problem) {
  return {{"kind", problem.cut_short ? "cut short" : "malformed"},
          {"line", problem.line},
          {"column", problem.column},
          {"what", problem.what}};
}

}  // namespace

Json SummaryJson(const WorkoutDocument& document, const WorkoutFigures& figures) {
  Json json = Json::object();
  Json computed = Json::array();
  const auto add = [&json, &computed](const char* name, const Figure& figure) {
    if (!figure.value) return;
    json[name] = *figure.value;
    if (figure.computed) computed.push_back(name);
  };
  add("seconds", figures.seconds);
  add("kcal", figures.kcal);
  add("km", figures.km);
  add("floors", figures.floors);
  add("pace", figures.pace);
  add("spm", figures.spm);
  add("rpm", figures.rpm);
  add("bpm", figures.bpm);
  if (figures.highest_bpm) json["highest_bpm"] = *figures.highest_bpm;
  json["paused_seconds"] = figures.paused_seconds;
  json["intervals"] = document.intervals.size();
  json["computed"] = computed;
  json["unusable_values"] = document.unusable_values;
  if (document.weight_kg) json["weight_kg"] = *document.weight_kg;
  json["equipment"] = EquipmentJson(document.equipment);
  json["complete"] = !document.problem;
  if (document.problem) json["problem"] = ProblemJson(*document.problem);
  return json;
}

}  // namespace ipodctl
