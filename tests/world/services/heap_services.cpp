// SPDX-License-Identifier: MIT
// The heap services. Outside a world, hosts' blocks come from a heap of the process.
#include "world/services/service.h"

using namespace ipodcomm::virtual_platform;

namespace {

MemoryBlocks& HeapOf(const Service& call) {
  static auto* const process_heap = new MemoryBlocks("block");
  WorldState* world = call.operator->();
  return world != nullptr ? world->heap : *process_heap;
}

}  // namespace

HLOCAL LocalAlloc(UINT flags, std::size_t size) {
  Service call(ServiceId::kLocalAlloc, ServiceKind::kAnywhere);
  call.Arguments([&] { return List({Number(flags), Number(size)}); });
  const HLOCAL none = nullptr;
  if (call.ToldToFail()) return none;
  MemoryBlocks& heap = HeapOf(call);
  const HLOCAL block = heap.Allocate(size, (flags & LMEM_ZEROINIT) != 0);
  if (block == nullptr) return call.Fails(ERROR_NOT_ENOUGH_MEMORY, none);
  return call.Returns(block, [&] { return heap.NameOf(block); });
}

HLOCAL LocalFree(HLOCAL memory) {
  Service call(ServiceId::kLocalFree, ServiceKind::kAnywhere);
  MemoryBlocks& heap = HeapOf(call);
  call.Arguments([&] { return heap.NameOf(memory); });
  if (call.ToldToFail()) return memory;
  if (memory != nullptr && !heap.Release(memory)) return call.FailsToGiveBack("a block", memory);
  const HLOCAL none = nullptr;
  return call.Returns(none, [] { return "null"; });
}
