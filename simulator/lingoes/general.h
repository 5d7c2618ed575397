// SPDX-License-Identifier: MIT
// The General lingo after identification: what the iPod is, how it is set, which events it tells.

#pragma once

#include <map>

#include "simulator/wire/link.h"
#include "tokens.h"

namespace ipodsim {

class General {
 public:
  General(Link* link, const Settings& settings);

  bool Handle(const Request& request);
  // Takes over the preferences among an accepted accessory's tokens.
  void Apply(const std::vector<Token>& tokens);
  // The accessory is gone: what it set is set back.
  void Forget();

  std::uint8_t preference(std::uint8_t preference_class) const;
  std::uint8_t ui_mode() const { return ui_mode_; }
  const Bytes& events() const { return events_; }

 private:
  bool HandleIdentity(const Request& request);
  bool HandleUserInterface(const Request& request);
  bool HandleEvents(const Request& request);
  void ReturnLingoVersion(const Request& request);
  void ReturnOptions(const Request& request);
  void ReturnPreference(const Request& request);
  void SetPreference(const Request& request);
  void SwitchUserInterface(const Request& request, std::uint8_t mode);
  bool KnowsPreferences() const;

  Link* link_;
  const Settings& settings_;
  const Traits& traits_;
  std::map<std::uint8_t, std::uint8_t> preferences_;
  std::uint8_t ui_mode_ = 0;
  Bytes events_;
};

}  // namespace ipodsim
