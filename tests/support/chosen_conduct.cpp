// SPDX-License-Identifier: MIT
#include "support/chosen_conduct.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace test {

void ChooseConduct(CIpodComm& session) {
  const char* text = std::getenv("IPODCOMM_CONDUCT");
  if (text == nullptr || std::string(text) == "field") return;
  const std::string name = text;
  if (name != "robust" && name != "fast") {
    throw std::invalid_argument("there is no conduct '" + name + "'");
  }
  EXPECT_EQ(session.SetConduct(name == "robust" ? &IPOD_CONDUCT_ROBUST : &IPOD_CONDUCT_FAST), 1);
}

std::unique_ptr<CIpodComm> NewSession() {
  auto session = std::make_unique<CIpodComm>();
  ChooseConduct(*session);
  return session;
}

}  // namespace test
