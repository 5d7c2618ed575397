// SPDX-License-Identifier: MIT
// Names compared whatever their case, as the registry and version resources do.
#pragma once

#include <string>

namespace ipodcomm::platform {

/// Lower case of the letters A to Z; the names in question use no others.
inline std::wstring FoldCase(std::wstring name) {
  for (wchar_t& c : name) {
    if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
  }
  return name;
}

}  // namespace ipodcomm::platform
