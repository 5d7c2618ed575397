// SPDX-License-Identifier: MIT
// Expects members.
#include "untrue/question.h"

#include <algorithm>

namespace truth {

std::string Differs(const std::string& what, const Json& said, const Json& truth) {
  return what + " " + said.dump() + " instead of " + truth.dump();
}

std::string Expect(const Json& object, const char* member, const Json& truth) {
  if (!object.contains(member)) return std::string("no ") + member;
  return object.at(member) == truth ? "" : Differs(member, object.at(member), truth);
}

bool WasRefused(const Question& question, std::uint8_t lingo, std::uint16_t command) {
  const auto& refusals = question.account.refusals;
  return std::any_of(refusals.begin(), refusals.end(), [=](const Refusal& refusal) {
    return refusal.lingo == lingo && refusal.command == command;
  });
}

std::string ExpectUnlessRefused(const Question& question, const Json& object, const char* member,
                                const Json& truth) {
  if (!object.contains(member) && question.was_refused()) return "";
  return Expect(object, member, truth);
}

}  // namespace truth
