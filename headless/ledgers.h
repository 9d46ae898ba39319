// What an effect borrowed from the host and has to give back.
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

// Counts acquired suites. May be used from several threads, as all ledgers.
class SuiteLedger {
 public:
  void Acquire(const std::string& name, std::int32_t version);
  // False when the suite is not acquired at the moment.
  bool Release(const std::string& name, std::int32_t version);
  // Suites with their outstanding counts; the ledger is empty afterwards.
  std::vector<std::pair<std::string, int>> TakeOutstanding();

 private:
  std::mutex mutex_;
  std::map<std::pair<std::string, std::int32_t>, int> counts_;
};

// Remembers checked-out parameters by the record that the effect had filled.
class CheckoutLedger {
 public:
  void CheckOut(const PF_ParamDef* record, int index);
  // The index that was checked out into this record, or nothing.
  std::optional<int> CheckIn(const PF_ParamDef* record);
  std::vector<int> TakeOutstanding();

 private:
  std::mutex mutex_;
  std::vector<std::pair<const PF_ParamDef*, int>> open_;
};

// Memory blocks of the basic suite.
class BlockLedger {
 public:
  ~BlockLedger();
  void* Allocate(std::size_t size);
  bool Free(void* block);
  // Null when memory runs out; the old block stays then. Unknown blocks give null, too.
  void* Reallocate(void* block, std::size_t size);
  // Frees what is left; how many blocks that were.
  int FreeOutstanding();

 private:
  std::mutex mutex_;
  std::vector<void*> blocks_;
};

}  // namespace vitrell::headless

#endif  // VITRELL_HEADLESS_LEDGERS_H_
