// SPDX-License-Identifier: MIT
// The world of the virtual platform, where its own World is at work.
#include "world.h"
#include "world/line/scripted_device.h"
#include "world/world.h"

namespace ipodcomm::test {

struct World::Implementation {
  virtual_platform::ScriptedDevice device;
  virtual_platform::World world;
};

World::World() : implementation_(std::make_unique<Implementation>()) {
  implementation_->world.line().Plug(implementation_->device);
}

World::~World() = default;

Traits World::traits() const {
  Traits traits;
  traits.has_port = true;
  traits.checks_open_arguments = true;
  traits.opens_a_port_once = true;
  traits.keeps_stop_bits = true;
  traits.checks_line_settings = true;
  traits.waits_for_events = true;
  traits.closing_ends_reads = true;
  traits.fails_reads_of_vanished_lines = true;
  traits.retires_handles = true;
  traits.ends_threads_at_safe_points = true;
  traits.tolerates_lock_misuse = true;
  traits.checks_heap_blocks = true;
  traits.checks_device_handles = true;
  traits.terminates_cut_conversions = true;
  return traits;
}

void World::Send(const Bytes& bytes) { implementation_->device.Send(bytes); }

Bytes World::Receive(std::size_t count) {
  virtual_platform::ScriptedDevice& device = implementation_->device;
  for (int waited_ms = 0; device.received().size() < count && waited_ms < 10'000; ++waited_ms) {
    implementation_->world.Advance(virtual_platform::kMillisecond);
  }
  const Bytes received = device.received();
  device.ClearReceived();
  return received;
}

void World::Unplug() { implementation_->world.line().Vanish(); }

void World::PlaceFile(const wchar_t* name, const Bytes& contents) {
  implementation_->world.PlaceFile(name, contents);
}

}  // namespace ipodcomm::test
