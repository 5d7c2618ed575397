// SPDX-License-Identifier: MIT
// The Storage lingo: files that an accessory opens, appends to and closes.

#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/files/feature_files.h"
#include "simulator/files/file_ending.h"
#include "simulator/wire/link.h"

namespace ipodsim {

class Storage {
 public:
  Storage(Link* link, const Settings& settings);

  // False on an iPod without the lingo.
  bool Handle(const Request& request);
  // The accessory is gone: open files end where they are, without what closing would append.
  void Forget();

  const FeatureFiles& files() const { return *files_; }
  std::vector<std::string> open_files() const;
  std::uint64_t free_space() const { return free_space_; }

 private:
  struct OpenFile {
    std::string name;
    std::uint32_t size = 0;
    std::uint32_t options = 0;
    Bytes closing_data;
    Signature signature;
  };

  void ReturnCapabilities(const Request& request);
  void ReturnFreeSpace(const Request& request);
  void Open(const Request& request);
  bool CheckOpen(const Request& request);
  void Write(const Request& request);
  bool CheckWrite(const Request& request, const OpenFile& file);
  void Close(const Request& request);
  OpenFile* FileOf(const Request& request, std::uint8_t handle);
  AckStatus Append(OpenFile* file, const Bytes& data);
  bool RepeatsLast(const Request& request) const;
  void Finish(const Request& request, AckStatus status);

  Link* link_;
  const Settings& settings_;
  std::shared_ptr<FeatureFiles> files_;
  std::uint64_t free_space_;
  std::map<std::uint8_t, OpenFile> open_;  // by handle
  std::uint8_t last_handle_ = 0;
  std::uint32_t writes_ = 0;
  std::optional<Request> last_done_;  // the last write or close that was carried out
};

}  // namespace ipodsim
