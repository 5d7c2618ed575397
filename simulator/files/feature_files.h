// SPDX-License-Identifier: MIT
// The place where an iPod keeps the files that accessories write.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "simulator/base/bytes.h"

namespace ipodsim {

/// Files are only ever added and appended to.
class FeatureFiles {
 public:
  virtual ~FeatureFiles() = default;

  /// Begins a new, empty file: Create("gym", ".xml") makes gym-0001.xml, then gym-0002.xml. Empty
  /// when that cannot be done.
  virtual std::string Create(const std::string& kind, const std::string& ending) = 0;
  /// False when the data could not be kept.
  virtual bool Append(const std::string& name, const Bytes& data) = 0;

  /// Of the files begun since the iPod was made, oldest first.
  virtual std::vector<std::string> Names() const = 0;
  /// What the file holds now, open or closed; empty when there is no such file.
  virtual std::string Read(const std::string& name) const = 0;
};

class MemoryFeatureFiles : public FeatureFiles {
 public:
  std::string Create(const std::string& kind, const std::string& ending) override;
  bool Append(const std::string& name, const Bytes& data) override;
  std::vector<std::string> Names() const override;
  std::string Read(const std::string& name) const override;

 private:
  std::vector<std::pair<std::string, std::string>> files_;  // name and content
};

/// "gym-0001.xml"
std::string FeatureFileName(const std::string& kind, unsigned number, const std::string& ending);

}  // namespace ipodsim
