// SPDX-License-Identifier: MIT
// A host outside of the library's tree: it links both interfaces and the helpers, and has no iPod.
#include <ipodcomm/CIpodComm.h>
#include <ipodcomm/DocumentText.h>
#include <ipodcomm/ipod.h>

#include <cstdio>

int main() {
  CIpodComm session;
  ipod legacy;
  const long code = session.Open();
  const int opened = legacy.openport();
  const std::wstring text = ipodcomm::DocumentText(L"a & b");
  std::printf("C++%ld: code %ld, %d, %ls\n", __cplusplus / 100, code, opened, text.c_str());
}
