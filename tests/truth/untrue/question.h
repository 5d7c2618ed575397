// SPDX-License-Identifier: MIT
// What a command said and what is true, and how the one is held against the other.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "command_line/command_line.h"
#include "judge.h"

namespace truth {

using Json = nlohmann::json;

/// What is asked of each subject: what a command said, and the iPod as the command left it.
struct Question {
  const Case& run;
  const ipodctl::Options& options;
  const std::vector<Json>& said;
  const Account& account;
  const ipodsim::SimulatedIpod& ipod;
  std::int64_t now_us;
  bool so_far = false;  // it was interrupted

  const Json& last() const { return said.back(); }
  const ipodsim::Traits& traits() const { return ipodsim::TraitsOf(run.profile); }
  // The player's. Of an iPod that was away in between, also what it was before.
  bool MayBe(ipodsim::PlayerState state) const {
    return ipod.player().state() == state || account.state_before == state;
  }
  // What a refused question would have told may be missing.
  bool was_refused() const { return !account.refusals.empty() && run.trouble->name != "none"; }
};

std::string Differs(const std::string& what, const Json& said, const Json& truth);
/// Empty when the member is there and true.
std::string Expect(const Json& object, const char* member, const Json& truth);
/// A member that may be missing where the iPod refused to tell it, but not be wrong.
std::string ExpectUnlessRefused(const Question& question, const Json& object, const char* member,
                                const Json& truth);
bool WasRefused(const Question& question, std::uint8_t lingo, std::uint16_t command);

/// The first that is not empty, if one is not.
template <class... Rest>
std::string FirstOf(const std::string& first, const Rest&... rest) {
  if constexpr (sizeof...(rest) == 0) {
    return first;
  } else {
    return first.empty() ? FirstOf(rest...) : first;
  }
}

}  // namespace truth
