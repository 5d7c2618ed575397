// SPDX-License-Identifier: MIT
// Properties: what holds whatever comes in. rapidcheck tries each on random inputs.
//
// Cross-builds have no rapidcheck for their target: the build then sets IPODCOMM_HAS_RAPIDCHECK to
// 0, what needs it is left out, and each property is a test that is skipped, so that it is counted
// and named.
#pragma once

#include <gtest/gtest.h>

#if !defined(IPODCOMM_HAS_RAPIDCHECK)
#define IPODCOMM_HAS_RAPIDCHECK 1
#endif

#if IPODCOMM_HAS_RAPIDCHECK

#include <rapidcheck/gtest.h>

#else

namespace test {

constexpr char kNoRapidcheck[] = "there is no rapidcheck for this target";

}  // namespace test

#endif
