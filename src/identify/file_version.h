// SPDX-License-Identifier: MIT
// The version of the host's executable, which the accessory announces as its own.
#pragma once

namespace ipodcomm {

/// Reads the FileVersion text ("major,minor,build,private") of an executable's version resource.
/// @param path as the platform finds it
/// @param build, private_part optional
/// @return non-zero when the text was found, whatever it holds; otherwise 0, reported on the
///   debug output, with the numbers left as they were.
int ReadFileVersion(const wchar_t* path, int* major, int* minor, int* build, int* private_part);

/// Version of the host's executable as the wire has it: major, minor, 0.
struct HostVersion {
  unsigned char bytes[3];
};
HostVersion ReadHostVersion();

}  // namespace ipodcomm
