// SPDX-License-Identifier: MIT
// The Sports lingo: which workout services there are, and the user's data.

#pragma once

#include "simulator/wire/link.h"

namespace ipodsim {

class Sports {
 public:
  Sports(Link* link, const Settings& settings)
      : link_(link), settings_(settings), user_data_(settings.sports.user_data) {}

  /// False on an iPod without the lingo.
  bool Handle(const Request& request);

  const UserData& user_data() const { return user_data_; }

 private:
  void ReturnCapabilities(const Request& request);
  bool OffersUserData(const Request& request);
  void ReturnUserData(const Request& request);
  void SetUserData(const Request& request);

  Link* link_;
  const Settings& settings_;
  UserData user_data_;
};

}  // namespace ipodsim
