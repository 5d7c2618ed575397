// SPDX-License-Identifier: MIT
// The file of a recording.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <string>

#include "wire/recording_reader.h"

namespace ipodctl {

/// Each member throws the CommandFailure that says what is wrong with the file.
class RecordingFile {
 public:
  /// @param name a path; "-" is standard input
  /// @param follow whether to wait at the end of a regular file for what is still being written
  RecordingFile(const std::string& name, bool follow);

  /// In bytes; 0 for one that grows, or is no file.
  std::uint64_t size() const { return size_; }

  /// Reads `count` bytes, or what there is of them at the end.
  std::size_t Read(std::uint8_t* bytes, std::size_t count);
  /// The same without waiting, of a file that is followed: 0 while there is nothing more.
  std::size_t Look(std::uint8_t* bytes, std::size_t count);
  /// For a reader; the file must outlive it.
  ipodwire::RecordingReader::Source source() {
    return [this](std::uint8_t* bytes, std::size_t count) { return Read(bytes, count); };
  }
  /// The recording has been closed: nothing more will come.
  void StopFollowing() { follow_ = false; }
  /// Throws unless the reading ended where the recording was closed.
  void RequireEnd(const ipodwire::RecordingReader& reader) const;

 private:
  void RequireSameFile() const;
  [[noreturn]] void Refuse(const std::string& why) const;

  std::string name_;
  std::ifstream file_;
  std::istream* stream_ = &std::cin;
  std::uint64_t size_ = 0;
  std::uint64_t position_ = 0;
  bool follow_ = false;
};

}  // namespace ipodctl
