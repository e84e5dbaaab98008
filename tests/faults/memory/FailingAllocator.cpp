// The allocation functions of the program, on malloc.
#include "FailingAllocator.h"

#include <cstdlib>
#include <new>

namespace {

thread_local bool armed = false;
thread_local std::size_t seen = 0;
thread_local std::size_t failing = 0;
void (*beforeFailing)() = nullptr;

void failWhenTold() {
  if (!armed || ++seen != failing) return;
  if (beforeFailing != nullptr) beforeFailing();
  throw std::bad_alloc();
}

void* allocate(std::size_t size) {
  failWhenTold();
  void* place = std::malloc(size == 0 ? 1 : size);
  if (place == nullptr) throw std::bad_alloc();
  return place;
}

void* allocate(std::size_t size, std::align_val_t alignment) {
  failWhenTold();
  const auto align = static_cast<std::size_t>(alignment);
  void* place = std::aligned_alloc(align, (size + align - 1) / align * align);
  if (place == nullptr) throw std::bad_alloc();
  return place;
}

void* allocateOrNull(std::size_t size) noexcept {
  try {
    return allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace

namespace faults {

FailingAllocation::FailingAllocation(std::size_t k) {
  seen = 0;
  failing = k;
  armed = true;
}

FailingAllocation::~FailingAllocation() {
  armed = false;
}

bool FailingAllocation::met() const {
  return seen >= failing;
}

void onFailure(void (*act)()) {
  beforeFailing = act;
}

}  // namespace faults

// Replacements are found by the modules only if they are visible.
#pragma GCC visibility push(default)
void* operator new(std::size_t size) {
  return allocate(size);
}
void* operator new[](std::size_t size) {
  return allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return allocate(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return allocate(size, alignment);
}
// The library's own would call those above, a sanitizer's would not.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocateOrNull(size);
}
void operator delete(void* place) noexcept {
  std::free(place);
}
void operator delete[](void* place) noexcept {
  std::free(place);
}
void operator delete(void* place, const std::nothrow_t&) noexcept {
  std::free(place);
}
void operator delete[](void* place, const std::nothrow_t&) noexcept {
  std::free(place);
}
void operator delete(void* place, std::size_t) noexcept {
  std::free(place);
}
void operator delete[](void* place, std::size_t) noexcept {
  std::free(place);
}
void operator delete(void* place, std::align_val_t) noexcept {
  std::free(place);
}
void operator delete[](void* place, std::align_val_t) noexcept {
  std::free(place);
}
void operator delete(void* place, std::size_t, std::align_val_t) noexcept {
  std::free(place);
}
void operator delete[](void* place, std::size_t, std::align_val_t) noexcept {
  std::free(place);
}
#pragma GCC visibility pop
