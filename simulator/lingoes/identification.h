// SPDX-License-Identifier: MIT
// How an accessory identifies: by tokens, by its lingo mask, or the oldest way.

#pragma once

#include <set>
#include <vector>

#include "questions.h"
#include "simulator/wire/link.h"
#include "tokens.h"

namespace ipodsim {

class Identification {
 public:
  Identification(Link* link, Questions* questions, const Settings& settings);

  /// True when the command belongs here.
  bool Handle(const Request& request);
  void Forget();

  bool identified() const { return announced_ != 0; }
  bool by_tokens() const { return by_tokens_; }
  /// Whether it began with the oldest identification, as consoles from before the tokens do.
  bool by_older_console() const { return by_older_console_; }
  /// One bit per lingo.
  std::uint32_t announced() const { return announced_; }
  const std::vector<Token>& tokens() const { return tokens_; }

  /// Whether this is the first command of an identification.
  static bool Begins(const Request& request);
  /// Whether an accessory may send this before it has identified.
  static bool IsAllowedBefore(const Request& request);

 private:
  void OldestIdentify(const Request& request);
  void IdentifyByLingoes(const Request& request);
  void StartTokens(const Request& request);
  void AcceptTokens(const Request& request);
  void EndTokens(const Request& request);
  void Remember(const Token& token);
  bool ReportMissingTokens();
  std::uint8_t Judge(const Token& token) const;

  Link* link_;
  Questions* questions_;
  const Settings& settings_;
  const Traits& traits_;
  bool accepts_tokens_ = false;
  bool by_tokens_ = false;
  bool began_oldest_way_ = false;  // and has not gone on to its lingoes
  bool by_older_console_ = false;
  std::uint32_t announced_ = 0;
  std::vector<Token> tokens_;
  std::set<Bytes> packets_;  // seen in this identification; a repeated one replaces nothing
};

}  // namespace ipodsim
