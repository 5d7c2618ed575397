// SPDX-License-Identifier: MIT
// A pseudo-terminal seen from its master side.

#pragma once

#include <string>

#include "simulator/base/bytes.h"

namespace ipodsim {

class Terminal {
 public:
  Terminal() = default;
  ~Terminal() { Close(); }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// Makes a raw terminal without echo. Empty on success, else the reason.
  std::string Open();
  void Close();
  bool is_open() const { return master_ >= 0; }
  int master() const { return master_; }
  const std::string& path() const { return path_; }

  /// Reads what is there, without waiting.
  Bytes Read();
  /// Writes as much as fits and takes it off the front.
  void Write(Bytes* bytes);
  /// Whether somebody has the other side open.
  bool Connected() const;

 private:
  void MakeRaw();

  int master_ = -1;
  std::string path_;
};

/// Makes `link` point to `target`, replacing a link that leads nowhere, there already, or to a
/// terminal made after it, but nothing else. Empty on success, else one sentence.
std::string PlaceLink(const std::string& link, const std::string& target);
/// Removes `link` if it still points to `target`.
void RemoveLink(const std::string& link, const std::string& target);

}  // namespace ipodsim
