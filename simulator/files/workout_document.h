// SPDX-License-Identifier: MIT
// Whether what an accessory wrote is a workout document: every element there, in its order, and
// numbers in the form that an iPod reads.
//
// There are two forms. The newer is the one of docs/gymdata.xsd up to the workout's summary; what
// the schema has behind that is the iPod's own. The older, which consoles wrote before it, has the
// gym's name and place instead of the manufacturer's name, always kilometres and pace, and numbers
// with six digits behind the point; its root element is indented, by which it is told apart.
//
// Read by hand and not by a parser for XML, since consoles write the texts of their users as they
// stand, a lone & or < included.

#pragma once

#include <string>
#include <string_view>

namespace ipodsim {

enum class WorkoutForm { kNewer, kOlder };

class WorkoutDocument {
 public:
  explicit WorkoutDocument(std::string_view content);

  WorkoutForm form() const { return form_; }
  /// What is wrong first, for example "line 6: <type> expected"; empty when nothing is.
  const std::string& problem() const { return problem_; }

 private:
  WorkoutForm form_;
  std::string problem_;
};

}  // namespace ipodsim
