// SPDX-License-Identifier: MIT
// What Wireshark asks of a program in its extcap folder.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace ipodctl {

/// Wireshark lists such programs' interfaces beside its own. It starts them anew for each question,
/// with arguments that no person types:
///
///     --extcap-interfaces                                        which interfaces are there?
///     --extcap-interface X --extcap-dlts                         what do its packets hold?
///     --extcap-interface X --extcap-config                       what may people choose?
///     --extcap-interface X --extcap-capture-filter F             may this filter be used?
///     --extcap-interface X --capture --fifo F [--choice value]   record into the pipe F
class ExtcapArguments {
 public:
  explicit ExtcapArguments(const std::vector<std::string>& arguments);

  /// Whether they are Wireshark's.
  bool any() const { return Has("extcap-interfaces") || Has("extcap-interface") || HasVersion(); }

  /// @param name without the dashes
  bool Has(const std::string& name) const { return values_.count(name) != 0; }
  /// Of an argument; empty when it has none, or is not there.
  std::string Value(const std::string& name) const;
  /// The names of those that are no part of what every such program is asked.
  std::vector<std::string> Choices() const;

 private:
  bool HasVersion() const { return Has("extcap-version"); }

  std::map<std::string, std::string> values_;
};

}  // namespace ipodctl
