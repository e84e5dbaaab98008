// An operator new, for the whole program and the modules it loads, that fails when told to.
#pragma once

#include <cstddef>

namespace faults {

// While it lives, the k-th allocation of this thread (counted from 1) throws std::bad_alloc; the
// ones after it succeed. Other threads are let alone. One at a time.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::size_t k);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  // Whether the run came so far.
  bool met() const;
};

// Called where an allocation is about to fail; it may not allocate. Null: nothing is.
void onFailure(void (*act)());

}  // namespace faults
