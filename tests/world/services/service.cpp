// SPDX-License-Identifier: MIT
// The frame around every service.
#include "world/services/service.h"

#include <cstdio>
#include <cstdlib>

namespace ipodcomm::virtual_platform {
namespace {

WorldState* WorldFor(ServiceId id, ServiceKind kind) {
  WorldState* world = CurrentWorld();
  const bool known = world != nullptr && Scheduler::Running() != nullptr;
  if (known) return world;
  if (kind == ServiceKind::kAnywhere) return nullptr;
  std::fprintf(stderr, "virtual platform: %s called %s\n", ServiceName(id),
               world == nullptr ? "while there is no World (make one first, destroy it last)"
                                : "on a thread that the World does not know");
  std::abort();
}

}  // namespace

Service::Service(ServiceId id, ServiceKind kind) : id_(id), world_(WorldFor(id, kind)) {
  if (world_ == nullptr) return;
  if (kind == ServiceKind::kDecision) scheduler().Step();
  failure_ = world_->faults.Count(id_, Scheduler::Running()->name);
  records_ = world_->recorder.Records(id_);
}

bool Service::ToldToFail() {
  if (failure_) Fails(*failure_, FALSE);
  return failure_.has_value();
}

HANDLE Service::Open(const std::shared_ptr<Object>& object) {
  const HANDLE handle = world_->handles.Add(object);
  if (handle == nullptr) return Fails(ERROR_NOT_ENOUGH_MEMORY, handle);
  world_->names.Opened(handle, object->name);
  return Returns(handle, [&] { return object->name; });
}

void Service::Begin(const std::string& arguments) {
  Call call;
  call.thread = Scheduler::Running()->name;
  call.service = ServiceName(id_);
  call.text = call.service + "(" + arguments + ")";
  call.start_us = world_->clock.now_us();
  number_ = world_->recorder.Begin(std::move(call));
}

// Null and the like was never open.
void Service::NoteGivenBackTwice(const std::string& name) {
  if (world_ == nullptr || name == "null" || name == "invalid") return;
  world_->given_back_twice.push_back(name + " by " + Scheduler::Running()->name);
}

void Service::Finish(const std::string& result) {
  world_->recorder.Finish(number_, result, world_->clock.now_us());
}

}  // namespace ipodcomm::virtual_platform
