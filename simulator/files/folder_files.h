// SPDX-License-Identifier: MIT
// Keeps a simulated iPod's feature files in a folder of the computer that it runs on.

#pragma once

#include <memory>
#include <string>

#include "feature_files.h"

namespace ipodsim {

struct FolderResult {
  std::shared_ptr<FeatureFiles> files;  // null when the folder cannot be used
  std::string error;                    // one sentence that says why
};

/// Makes the folder when only its last part is missing. Files that are there already stay as they
/// are; new ones get the numbers after them. What is appended is in the file at once.
FolderResult OpenFeatureFolder(const std::string& path);

}  // namespace ipodsim
