// SPDX-License-Identifier: MIT
// What all services have in common: one call, from its beginning to its end.
#pragma once

#include <optional>
#include <string>

#include "world/services/render.h"
#include "world/threads/race_detector.h"
#include "world/world_state.h"

namespace ipodcomm::virtual_platform {

enum class ServiceKind {
  kDecision,  ///< somebody else may run before it
  kPlain,     ///< concerns nobody else
  kAnywhere,  ///< plain, and works without a world
};

/// Lives for the length of a call, which the race detector does not watch. The order of use:
///
///   Service call(ServiceId::kX);                        somebody else may run first
///   call.Arguments([&] { return ...; });                for the record
///   if (call.ToldToFail()) return FALSE;                the fault switches
///   ...                                                 the work
///   return call.Returns(value, [&] { return ...; });    for the record
class Service {
 public:
  explicit Service(ServiceId id, ServiceKind kind = ServiceKind::kDecision);

  /// Null only for a kAnywhere service.
  WorldState* operator->() const { return world_; }
  Scheduler& scheduler() const { return world_->scheduler; }
  /// The name of a handle.
  std::string Name(HANDLE handle) const { return world_->names.Of(handle); }

  template <class Render>
  void Arguments(Render render) {
    if (records_) Begin(render());
  }
  /// True when the call is to fail; the code is set and the failure recorded.
  bool ToldToFail();
  /// The code of the failure, for services that return it.
  const std::optional<DWORD>& failure() const { return failure_; }

  template <class Value, class Render>
  Value Returns(Value value, Render render) {
    if (records_) Finish(render());
    return value;
  }
  /// FALSE, 0 or null, with the code set.
  template <class Value>
  Value Fails(DWORD code, Value value) {
    SetLastError(code);
    if (records_) Finish("failed " + std::to_string(code));
    return value;
  }
  /// TRUE for code 0.
  BOOL Succeeds(DWORD code) {
    if (code != ERROR_SUCCESS) return Fails(code, FALSE);
    return Returns(TRUE, [] { return "1"; });
  }
  /// FALSE or what else stands for it: what was to be given back is not open (any more).
  template <class Value>
  Value FailsToGiveBack(const std::string& name, Value value) {
    NoteGivenBackTwice(name);
    return Fails(ERROR_INVALID_HANDLE, value);
  }
  /// For services without a result.
  void Done() {
    if (records_) Finish("");
  }

  /// A handle for a new object; null, with the failure recorded, when there is none left.
  HANDLE Open(const std::shared_ptr<Object>& object);

 private:
  void Begin(const std::string& arguments);
  void Finish(const std::string& result);
  void NoteGivenBackTwice(const std::string& name);

  const Unwatched unwatched_;
  const ServiceId id_;
  WorldState* const world_;
  std::optional<DWORD> failure_;
  bool records_ = false;
  std::size_t number_ = 0;
};

}  // namespace ipodcomm::virtual_platform
