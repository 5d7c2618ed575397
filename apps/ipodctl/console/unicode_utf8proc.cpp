// SPDX-License-Identifier: MIT
// Unicode by utf8proc.
#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "console/unicode.h"

namespace ipodctl {

// What is no UTF-8 has no case.
std::string CaseFolded(const std::string& utf8) {
  utf8proc_uint8_t* folded = nullptr;
  const auto options =
      static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE | UTF8PROC_CASEFOLD);
  const utf8proc_ssize_t length =
      utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(utf8.data()),
                   static_cast<utf8proc_ssize_t>(utf8.size()), &folded, options);
  const std::unique_ptr<utf8proc_uint8_t, void (*)(void*)> owned(folded, std::free);
  if (length < 0) return utf8;
  return {folded, folded + length};
}

std::size_t ColumnsOf(std::uint32_t character) {
  const int columns = utf8proc_charwidth(static_cast<utf8proc_int32_t>(character));
  return static_cast<std::size_t>(std::max(columns, 0));
}

}  // namespace ipodctl
