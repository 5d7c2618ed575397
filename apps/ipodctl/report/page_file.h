// SPDX-License-Identifier: MIT
// The files that pages are written to.
#pragma once

#include <filesystem>
#include <string>

namespace ipodctl {

/// "run.html" for "run.xml". A document that is itself named so is not overwritten.
std::filesystem::path PageBeside(const std::filesystem::path& document);

/// Throws a CommandFailure where writing the page would overwrite the document.
void RequireAnotherFile(const std::string& document, const std::string& page);

/// Throws a CommandFailure when the page cannot be written; no half of it is left.
void WritePage(const std::string& html, const std::string& path);

}  // namespace ipodctl
