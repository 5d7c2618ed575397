// SPDX-License-Identifier: MIT
// ipodctl reads a recording on standard input byte by byte, also those that end or change a text on
// Windows.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <io.h>

#include <cstdint>
#include <cstdio>
#include <vector>

#include "wire/recording_file.h"

namespace {

TEST(RecordingOnStandardInput, IsReadAsBytes) {
  const std::vector<std::uint8_t> written = {0x0A, 0x0D, 0x0D, 0x0A, 0x1A, 0x2B, 0x0D, 0x0A, 0xFF};
  std::FILE* const file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  ASSERT_EQ(std::fwrite(written.data(), 1, written.size(), file), written.size());
  std::rewind(file);
  // Standard input is a text when a program starts.
  ASSERT_EQ(_dup2(_fileno(file), _fileno(stdin)), 0);
  _setmode(_fileno(stdin), _O_TEXT);

  ipodctl::RecordingFile recording("-", /*follow=*/false);
  std::vector<std::uint8_t> read(100);
  read.resize(recording.Read(read.data(), read.size()));
  EXPECT_EQ(read, written);
  std::fclose(file);
}

}  // namespace
