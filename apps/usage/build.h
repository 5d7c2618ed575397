// SPDX-License-Identifier: MIT
// Which build this is. The values come from cmake/BuildIdentity.cmake.
#pragma once

namespace usage {

extern const char* const kVersion;    // "1.0.0"
extern const char* const kBuild;      // the version, and the commit in brackets where it is known
extern const char* const kBuildDate;  // "2026-02-01", that of the commit

}  // namespace usage
