// SPDX-License-Identifier: MIT
// The file that takes a recording, and what differs by system about writing to it.
#pragma once

#include <cstdio>
#include <string>

namespace ipodcomm::capture {

/// @param file its path, UTF-8; it is written from its beginning. "-" is standard output.
/// @return null when it cannot be made, with the reason in errno
std::FILE* OpenRecordingStream(const std::string& file);

/// For the thread that writes: the reader of a pipe may leave, and the process goes on without it.
void SurviveLeavingReaders();

}  // namespace ipodcomm::capture
