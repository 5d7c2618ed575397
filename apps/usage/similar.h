// SPDX-License-Identifier: MIT
// Which word was meant by a misspelt one.
#pragma once

#include <string>
#include <vector>

namespace usage {

/// The one of `words` that is most like `word`; empty when none is like it.
std::string MostSimilar(const std::string& word, const std::vector<std::string>& words);

}  // namespace usage
