// Scratch memory for the threads of a pass that compute strips.
#ifndef VITRELL_PASS_WORKSPACES_H_
#define VITRELL_PASS_WORKSPACES_H_

#include <cstddef>
#include <cstdint>

#include "base/buffer.h"

namespace vitrell {

// A fixed number of memory blocks, each lent to one thread at a time. They exist because a callback
// must not allocate and the number of the host's threads is unknown; a thread that finds all of
// them lent has to do without.
template <typename Value>
class Workspaces {
 public:
  // Makes room for the given number of values in each block, reusing memory that is large enough.
  // False if memory is short. No block may be on loan.
  [[nodiscard]] bool Reset(std::size_t values) {
    blockSize_ = values;
    const std::size_t all = kBlocks * values + 1;  // One more, for alignment.
    return memory_.size() >= all || memory_.Allocate(all);
  }

  // A thread's loan of a block, from construction to destruction.
  class Loan {
   public:
    explicit Loan(Workspaces* workspaces) : workspaces_(workspaces), block_(workspaces->Take()) {}
    ~Loan() {
      if (block_ != kBlocks) {
        __atomic_fetch_and(&workspaces_->taken_, ~(1U << block_), __ATOMIC_RELEASE);
      }
    }
    Loan(const Loan&) = delete;
    Loan& operator=(const Loan&) = delete;

    // The block's first value, aligned to the size of a value; null if all blocks are on loan.
    Value* values() const { return block_ != kBlocks ? workspaces_->Block(block_) : nullptr; }

   private:
    Workspaces* workspaces_;
    std::uint32_t block_;
  };

 private:
  static constexpr std::uint32_t kBlocks = 16;

  std::uint32_t Take() {
    std::uint32_t taken = __atomic_load_n(&taken_, __ATOMIC_RELAXED);
    for (std::uint32_t block = 0; block < kBlocks;) {
      const std::uint32_t bit = 1U << block;
      if ((taken & bit) != 0) {
        ++block;
      } else if (__atomic_compare_exchange_n(&taken_, &taken, taken | bit, false, __ATOMIC_ACQUIRE,
                                             __ATOMIC_RELAXED)) {
        return block;
      }
    }
    return kBlocks;
  }

  Value* Block(std::uint32_t block) {
    const auto address = reinterpret_cast<std::uintptr_t>(memory_.data());
    const std::uintptr_t aligned = (address + sizeof(Value) - 1) / sizeof(Value) * sizeof(Value);
    return reinterpret_cast<Value*>(aligned) + block * blockSize_;
  }

  Buffer<Value> memory_;
  std::size_t blockSize_ = 0;
  std::uint32_t taken_ = 0;  // One bit per block: it is on loan.
};

}  // namespace vitrell

#endif  // VITRELL_PASS_WORKSPACES_H_
