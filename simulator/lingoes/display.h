// SPDX-License-Identifier: MIT
// The iPod's monochrome display, on which an accessory may show a picture of its own.

#pragma once

#include "simulator/wire/link.h"

namespace ipodsim {

class Display {
 public:
  explicit Display(Link* link) : link_(link) {}

  bool Handle(const Request& request);
  /// The accessory is gone, and its picture with it.
  void Forget();

  /// The picture shown, row by row; empty until all of one has come.
  const Bytes& image() const { return image_; }

 private:
  void StorePart(const Request& request);
  bool Begin(const Request& request);

  Link* link_;
  Bytes image_;
  Bytes incoming_;
  std::size_t expected_bytes_ = 0;  // 0 while no picture is under way
  std::uint16_t next_part_ = 0;
};

}  // namespace ipodsim
