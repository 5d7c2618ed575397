// SPDX-License-Identifier: MIT
// What a handle or a critical section stands for, with a name that is the same in every run.
#pragma once

#include <string>
#include <utility>

#include "platform/common/handle_table.h"

namespace ipodcomm::virtual_platform {

struct Object : platform::Object {
  explicit Object(std::string object_name) : name(std::move(object_name)) {}

  /// For the report of who waits on what.
  virtual std::string Describe() const { return name; }

  const std::string name;
};

}  // namespace ipodcomm::virtual_platform
