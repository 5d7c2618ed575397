// SPDX-License-Identifier: MIT
// The world of desktop Windows: the system itself. A serial port with a far end is not at hand.
#include <cstdio>
#include <filesystem>

#include "world.h"

namespace ipodcomm::test {

struct World::Implementation {
  std::filesystem::path folder;
  std::filesystem::path previous_folder;
};

World::World() : implementation_(std::make_unique<Implementation>()) {
  implementation_->folder = std::filesystem::temp_directory_path() /
                            ("ipodcomm-test-" + std::to_string(GetCurrentProcessId()));
  implementation_->previous_folder = std::filesystem::current_path();
  std::filesystem::create_directories(implementation_->folder);
  std::filesystem::current_path(implementation_->folder);
}

World::~World() {
  std::filesystem::current_path(implementation_->previous_folder);
  std::error_code ignored;
  std::filesystem::remove_all(implementation_->folder, ignored);
}

// The system promises none of what may differ.
Traits World::traits() const {
  Traits traits;
  traits.tick_step_ms = 16;
  return traits;
}

void World::Send(const Bytes&) {}

Bytes World::Receive(std::size_t) { return {}; }

void World::Unplug() {}

void World::PlaceFile(const wchar_t* name, const Bytes& contents) {
  std::FILE* file = _wfopen(name, L"wb");
  std::fwrite(contents.data(), 1, contents.size(), file);
  std::fclose(file);
}

}  // namespace ipodcomm::test
