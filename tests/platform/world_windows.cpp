// SPDX-License-Identifier: MIT
// The world of desktop Windows: the system itself, and a far end where one is at hand.
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "far_end_windows.h"
#include "world.h"

namespace ipodcomm::test {

struct World::Implementation {
  std::unique_ptr<FarEnd> far_end;
  std::filesystem::path folder;
  std::filesystem::path previous_folder;
};

World::World() : implementation_(std::make_unique<Implementation>()) {
  if (const char* port = std::getenv("IPODCOMM_FAR_END")) {
    implementation_->far_end = std::make_unique<FarEnd>(port);
  }
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

// The system promises none of what may differ. It is Wine's conduct on a pseudo-terminal that the
// suite finds where a flag is not set.
Traits World::traits() const {
  Traits traits;
  traits.has_port = implementation_->far_end != nullptr;
  traits.tick_step_ms = 16;
  return traits;
}

void World::Send(const Bytes& bytes) { implementation_->far_end->Send(bytes); }

Bytes World::Receive(std::size_t count) { return implementation_->far_end->Receive(count); }

void World::Unplug() { implementation_->far_end->HangUp(); }

void World::PlaceFile(const wchar_t* name, const Bytes& contents) {
  std::FILE* file = _wfopen(name, L"wb");
  std::fwrite(contents.data(), 1, contents.size(), file);
  std::fclose(file);
}

}  // namespace ipodcomm::test
