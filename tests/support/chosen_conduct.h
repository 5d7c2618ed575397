// SPDX-License-Identifier: MIT
// The conduct that the tests of a session are run under: the environment variable IPODCOMM_CONDUCT
// says "field", the default, "robust" or "fast". tests/conducts runs them so.
#pragma once

#include <memory>

#include "ipodcomm/CIpodComm.h"

namespace test {

/// Sets it on a session, nothing where it is the default. A test that sets another one afterwards
/// runs under that.
/// @throws std::invalid_argument when the variable names no conduct
void ChooseConduct(CIpodComm& session);

/// Sessions under it, for tests that make their own.
class ChosenSession : public CIpodComm {
 public:
  ChosenSession() { ChooseConduct(*this); }
};
std::unique_ptr<CIpodComm> NewSession();

}  // namespace test
