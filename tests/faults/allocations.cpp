#include "faults/allocations.h"

#include <cstdlib>
#include <limits>
#include <new>

#include "base/memory_reserve.h"

namespace zenqay {
namespace {

constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

std::int64_t count = 0;
std::int64_t failing = kNever;
Shortage kind = Shortage::Once;
void* reserve = nullptr;

}  // namespace

void RunOutOfMemoryAt(std::int64_t allocation, Shortage shortage) {
  count = 0;
  failing = allocation;
  kind = shortage;
}

std::int64_t CountAllocations() {
  failing = kNever;
  return count;
}

}  // namespace zenqay

void* operator new(std::size_t size) {
  using namespace zenqay;
  const std::int64_t index = count++;
  const bool fails = kind == Shortage::Once ? index == failing : index >= failing;
  if (fails) throw std::bad_alloc();
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  if (size == kMemoryReserve) reserve = memory;
  return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return ::operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete(void* memory) noexcept {
  using namespace zenqay;
  if (memory != nullptr && memory == reserve) {
    reserve = nullptr;
    failing = kNever;
  }
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  ::operator delete(memory);
}
