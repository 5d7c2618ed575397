// SPDX-License-Identifier: MIT
// Whether a command may come now: after identification, in a lingo that was announced, in the mode
// that it needs, and not before the iPod has answered what came before it.

#pragma once

#include "general.h"
#include "identification.h"
#include "simulator/wire/link.h"

namespace ipodsim {

class Order {
 public:
  Order(Link* link, const Identification* identification, const General* general)
      : link_(link), identification_(identification), general_(general) {}

  /// Reports what is out of order. Most of it is served all the same, as iPods do; false for what
  /// is refused instead.
  bool Check(const Request& request);
  /// A frame that had to carry a transaction identifier came without one.
  void NoticeMissingIdentifier(const Request& request);
  /// A frame of any kind came: decides about the one before it.
  void NoticeFrame(const Request& request);
  /// The accessory is gone.
  void Forget();

 private:
  bool CheckIdentified(const Request& request);
  void CheckTurn(const Request& request);

  Link* link_;
  const Identification* identification_;
  const General* general_;
  bool exit_without_identifier_ = false;  // the last frame was such an ExitRemoteUIMode
  // The accessory may take an answer that it did not wait for as one that it waits for.
  bool answers_behind_ = false;
  Microseconds last_frame_at_ = 0;
};

}  // namespace ipodsim
