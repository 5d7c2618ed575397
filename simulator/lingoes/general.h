// SPDX-License-Identifier: MIT
// The General lingo after identification: what the iPod is, how it is set, which events it tells.

#pragma once

#include <map>

#include "restorable.h"
#include "simulator/wire/link.h"
#include "tokens.h"

namespace ipodsim {

class General {
 public:
  General(Link* link, const Settings& settings);

  bool Handle(const Request& request);
  /// Takes over the preferences among an accepted accessory's tokens.
  void Apply(const std::vector<Token>& tokens);
  /// The accessory is gone: what it set is set back, its preferences where it asked for that.
  void Forget();
  /// Tells no more events.
  void ForgetEvents() { events_.assign(kEventBytes, 0); }

  std::uint8_t preference(std::uint8_t preference_class) const;
  std::uint8_t ui_mode() const { return ui_mode_; }
  /// The mode in which the iPod is controlled from outside.
  bool in_extended_mode() const { return ui_mode_ == kExtendedMode; }
  const Bytes& events() const { return events_; }

 private:
  static constexpr std::uint8_t kExtendedMode = 1;
  static constexpr std::size_t kEventBytes = 8;

  struct Preference {
    std::uint8_t value = 0;
    Restorable<std::uint8_t> original;
  };

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
  void ChangePreference(std::uint8_t preference_class, std::uint8_t value, AtDetach at_detach);

  std::map<std::uint8_t, Preference> preferences_;  // by class
  std::uint8_t ui_mode_ = 0;
  Bytes events_;
};

}  // namespace ipodsim
