#include "base/memory_reserve.h"

#include <new>
#include <utility>

namespace zenqay {
namespace {

/// As much the process's own as its heap is: what runs out of memory has nothing else in common.
void* reserve = nullptr;

}  // namespace

void SetMemoryAside() noexcept {
  if (reserve == nullptr) reserve = ::operator new(kMemoryReserve, std::nothrow);
}

void GiveMemoryBack() noexcept {
  ::operator delete(std::exchange(reserve, nullptr));
}

}  // namespace zenqay
