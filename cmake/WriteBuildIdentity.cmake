# SPDX-License-Identifier: MIT
# Writes OUTPUT: the version, the commit and the date of the tree SOURCE. The commit of a tree without
# git is what the environment variable IPODCOMM_COMMIT says. SOURCE_DATE_EPOCH goes before the commit's
# date; a tree that has neither has the date of this day.
set(commit "$ENV{IPODCOMM_COMMIT}")
set(date "")
if(EXISTS ${SOURCE}/.git)
  execute_process(COMMAND git -C ${SOURCE} describe --always --dirty --abbrev=12 --exclude=*
                  OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  execute_process(COMMAND git -C ${SOURCE} log -1 --format=%cs
                  OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
if(DEFINED ENV{SOURCE_DATE_EPOCH} OR NOT date)
  string(TIMESTAMP date %Y-%m-%d UTC)
endif()
string(REPLACE "-dirty" ", changed" commit "${commit}")
set(build "${VERSION}")
if(commit)
  string(APPEND build " (${commit})")
endif()
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT [[
#include "usage/build.h"

namespace usage {

const char* const kVersion = "@VERSION@";
const char* const kBuild = "@build@";
const char* const kBuildDate = "@date@";

}  // namespace usage
]] @ONLY)
