// Records what an effect has borrowed from the host and must give back.
#ifndef VITRELL_HEADLESS_LEDGERS_H_
#define VITRELL_HEADLESS_LEDGERS_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/host_api.h"

namespace vitrell::headless {

// Counts acquired suites. Like all ledgers, safe to use from several threads.
class SuiteLedger {
 public:
  void Acquire(const std::string& name, std::int32_t version);
  // False if the suite is not currently acquired.
  bool Release(const std::string& name, std::int32_t version);
  // Returns the suites still acquired with their counts, and empties the ledger.
  std::vector<std::pair<std::string, int>> TakeOutstanding();

 private:
  std::mutex mutex_;
  std::map<std::pair<std::string, std::int32_t>, int> counts_;
};

// Tracks checked-out parameters by the address of the record that was filled.
class CheckoutLedger {
 public:
  void CheckOut(const PF_ParamDef* record, int index);
  // The index that was checked out into this record, if any.
  std::optional<int> CheckIn(const PF_ParamDef* record);
  std::vector<int> TakeOutstanding();

 private:
  std::mutex mutex_;
  std::vector<std::pair<const PF_ParamDef*, int>> open_;
};

// Memory blocks allocated through the basic suite.
class BlockLedger {
 public:
  ~BlockLedger();
  void* Allocate(std::size_t size);
  bool Free(void* block);
  // Returns null if memory runs out, leaving the old block valid, and for unknown blocks.
  void* Reallocate(void* block, std::size_t size);
  // Frees the remaining blocks and returns their number.
  int FreeOutstanding();

 private:
  std::mutex mutex_;
  std::vector<void*> blocks_;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_LEDGERS_H_
