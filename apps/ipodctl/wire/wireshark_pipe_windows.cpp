// SPDX-License-Identifier: MIT
// On Windows the pipe is there, with its reader, when this program starts.
#include <filesystem>
#include <fstream>

#include "console/failure.h"
#include "wire/wireshark_pipe.h"

namespace ipodctl {

class WiresharkPipe::Stream : public std::ofstream {
 public:
  explicit Stream(const std::string& path)
      : std::ofstream(std::filesystem::u8path(path), std::ios::binary) {
    if (!is_open()) throw CommandFailure(kCannotCreate, "cannot record to " + path);
  }
};

WiresharkPipe::WiresharkPipe(const std::string& path) : stream_(std::make_unique<Stream>(path)) {}

WiresharkPipe::~WiresharkPipe() = default;

bool WiresharkPipe::Write(const std::uint8_t* bytes, std::size_t count) {
  stream_->write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(count));
  return static_cast<bool>(stream_->flush());
}

bool WiresharkPipe::IsRead() const { return static_cast<bool>(*stream_); }

}  // namespace ipodctl
