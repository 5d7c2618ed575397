// SPDX-License-Identifier: MIT
// What the iPod tells of itself.
#include <algorithm>
#include <cstdio>
#include <map>

#include "untrue/subjects.h"

namespace truth {

namespace {

std::string VersionText(const ipodsim::Version& version) {
  char text[16];
  std::snprintf(text, sizeof text, "%u.%02u", version.major, version.minor);
  return text;
}

std::string SoftwareText(const ipodsim::Traits& traits) {
  return std::to_string(traits.software[0]) + "." + std::to_string(traits.software[1]) + "." +
         std::to_string(traits.software[2]);
}

}  // namespace

std::string UntrueLingoes(const Question& question) {
  const std::map<std::uint8_t, const char*> names = {
      {0x00, "General"},        {0x02, "Simple Remote"},
      {0x03, "Display Remote"}, {0x04, "Extended Interface"},
      {0x09, "Sports"},         {0x0C, "Storage"}};
  const Json told = question.last().value("lingoes", Json::object());
  for (const auto& [lingo, name] : names) {
    const ipodsim::LingoSupport* support = question.traits().Lingo(lingo);
    const Json lacking = question.last().value("lacking", Json::array());
    const bool denied = std::find(lacking.begin(), lacking.end(), name) != lacking.end();
    if (denied && support != nullptr && !KnowsNoSuchLingo(question.account)) {
      return std::string(name) + " is said to be lacking";
    }
    if (support == nullptr) {
      if (told.contains(name)) return std::string(name) + " " + told.at(name).dump();
    } else if (told.contains(name) || !question.was_refused()) {
      const std::string untrue = Expect(told, name, VersionText(support->version));
      if (!untrue.empty()) return untrue;
    }
  }
  return "";
}

std::string UntrueLegacyInfo(const Question& question) {
  const ipodsim::Traits& traits = question.traits();
  const bool sports = traits.Lingo(ipodsim::kSports) != nullptr && traits.model_id >> 16 == 0x0014;
  const std::pair<const char*, Json> facts[] = {{"name", question.ipod.settings().library.name},
                                                {"model", traits.model_number},
                                                {"model_id", traits.model_id},
                                                {"serial_number", traits.serial_number},
                                                {"software_version", SoftwareText(traits)},
                                                {"sports", sports}};
  for (const auto& [member, truth] : facts) {
    const std::string untrue = ExpectUnlessRefused(question, question.last(), member, truth);
    if (!untrue.empty()) return untrue;
  }
  const Json lingoes = question.last().value("lingoes", Json::object());
  return ExpectUnlessRefused(question, lingoes, "General", VersionText(traits.Lingo(0)->version));
}

// An iPod that says of a lingo that it does not know it is taken for one without.
std::string UntrueSports(const Question& question) {
  const Json& info = question.last();
  const bool sports = question.traits().Lingo(ipodsim::kSports) != nullptr;
  const bool may_be_denied = question.was_refused() && KnowsNoSuchLingo(question.account);
  if (may_be_denied && info.contains("sports") && info.at("sports") == false) return "";
  return ExpectUnlessRefused(question, info, "sports", sports);
}

std::string UntrueInfo(const Question& question) {
  const Json& info = question.last();
  const ipodsim::Traits& traits = question.traits();
  // An iPod that was away has forgotten it.
  const char* const by = question.ipod.identified_by_tokens() ? "tokens" : "lingoes";
  const std::string identified = question.account.cut_off ? "" : Expect(info, "identified_by", by);
  std::string payload;
  if (traits.identifies_by_tokens) {
    payload = ExpectUnlessRefused(question, info, "max_payload", 506);
  }
  return FirstOf(ExpectUnlessRefused(question, info, "name", question.ipod.settings().library.name),
                 ExpectUnlessRefused(question, info, "model", traits.model_number),
                 ExpectUnlessRefused(question, info, "model_id", traits.model_id),
                 ExpectUnlessRefused(question, info, "serial_number", traits.serial_number),
                 ExpectUnlessRefused(question, info, "software_version", SoftwareText(traits)),
                 identified, UntrueSports(question), payload, UntrueLingoes(question));
}

}  // namespace truth
