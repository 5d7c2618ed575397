// SPDX-License-Identifier: MIT
// Reading workout documents where there is no XML parser to build with.
#include "console/failure.h"
#include "report/workout_reader.h"

namespace ipodctl {

WorkoutDocument ReadWorkoutDocument(const std::string& path) {
  throw CommandFailure(kFailed, "this build of ipodctl has no XML parser and cannot read " + path +
                                    "; make the report on a system whose build has one, such as "
                                    "Linux");
}

}  // namespace ipodctl
