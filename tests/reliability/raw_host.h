// A host that passes any record, sound or not, while accessing only valid memory itself.
#ifndef VITRELL_RELIABILITY_RAW_HOST_H_
#define VITRELL_RELIABILITY_RAW_HOST_H_

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/host_api.h"

namespace vitrell::reliability {

// Which end of the pixels touches a closed page; on the heap neither does, and an address sanitizer
// watches both.
enum class MemoryEnd { kFirst, kLast, kHeap };

// Exactly as many bytes as the image takes, between two inaccessible pages.
class GuardedPixels {
 public:
  GuardedPixels(std::size_t bytes, MemoryEnd end);
  ~GuardedPixels();
  GuardedPixels(const GuardedPixels&) = delete;
  GuardedPixels& operator=(const GuardedPixels&) = delete;

  std::byte* begin() const { return begin_; }
  std::size_t size() const { return bytes_; }
  bool Contains(const void* address, std::size_t bytes) const;
  std::uint64_t Checksum() const;

 private:
  void Map(MemoryEnd end);

  std::unique_ptr<std::byte[]> heap_;
  std::byte* begin_ = nullptr;
  std::size_t bytes_ = 0;
  std::byte* mapped_ = nullptr;  // The memory between the inaccessible pages.
  std::size_t mappedBytes_ = 0;
};

// What is wrong with a world, or only unusual. The memory suits the record in every case, as far as
// there is any.
enum class WorldKind {
  kUsual,
  kNoData,
  kNoWidth,
  kNoHeight,
  kNegativeWidth,
  kNegativeHeight,
  kOnePixel,
  kOneRow,
  kOneColumn,
  kOddPadding,  // 3 bytes in 8-bit worlds, 2 in 16-bit ones.
  kBottomUp,    // Negative rowbytes.
  kSmallExtent,
  kLargeExtent,  // 20 % beyond on every side.
  kShiftedExtent,
  kInvertedExtent,
  kFarExtent,   // A sound size, far away.
  kHugeExtent,  // From the smallest number to the largest.
  kLongExtent,  // One line of two thousand million pixels.
  kOtherSize,
  kDeepFlagOnly,     // 8-bit pixels, 16-bit flag.
  kShallowFlagOnly,  // 16-bit pixels, 8-bit flag.
  kRowsTooShort,     // By one byte.
  kNoRowBytes,
  kOddDeepRows,  // 16-bit pixels at odd addresses.
  kStrangeFlags,
  kCount,
};
const char* NameOf(WorldKind kind);

// What PF_GetPixelFormat answers.
enum class FormatAnswer { kByFlags, kShallow, kDeep, kFloat, kInvalid, kFails, kCount };

class RawHost {
 public:
  static constexpr A_long kOutputWidth = 13;
  static constexpr A_long kOutputHeight = 9;

  // What the calls of `failingCalls` answer.
  static constexpr PF_Err kPlannedFault = 901;

  struct Setup {
    A_long width = kOutputWidth;
    A_long height = kOutputHeight;
    bool deep = false;
    MemoryEnd end = MemoryEnd::kLast;
    WorldKind input = WorldKind::kUsual;
    WorldKind output = WorldKind::kUsual;
    WorldKind custom = WorldKind::kNoData;
    WorldKind newWorlds = WorldKind::kUsual;
    bool onlyOneNewWorldIsStrange = false;  // The second one, else all.
    FormatAnswer format = FormatAnswer::kByFlags;
    bool copiesFromNothing = false;  // A copy without pixels answers success.
    bool givesEmptyWorlds = false;   // new_world of no size answers success and no pixels.
    bool iteratesBackwards = false;  // From the last pixel to the first.
  };

  // One at a time. The parameters stand as the effect registers them.
  RawHost(PF_EntryPoint entryPoint, const Setup& setup);
  ~RawHost();
  RawHost(const RawHost&) = delete;
  RawHost& operator=(const RawHost&) = delete;

  PF_Err Send(PF_Cmd cmd);
  PF_Err Render() { return Send(PF_Cmd_RENDER); }
  // Of the output's memory.
  std::uint64_t OutputChecksum() const;
  // Worlds, suites and check-outs not yet released; empty if there are none.
  std::string Outstanding() const;
  PF_ParamDef& Param(int index) { return records_[static_cast<std::size_t>(index)]; }
  // Beside what `setup` makes of it, a test may change every record before Send().
  PF_InData in{};
  PF_OutData out{};
  PF_UtilCallbacks utils{};
  SPBasicSuite basic{};
  std::vector<PF_ParamDef*> params;
  PF_LayerDef outputRecord{};
  PF_LayerDef* output = nullptr;
  // Called at the beginning of every host call, and in the middle of passes.
  std::function<void()> onCall;
  // Host calls that fail, by their number. What gives something back still takes it.
  std::vector<int> failingCalls;
  int calls = 0;     // Since the host was made, or since a test set it to 0.
  int failures = 0;  // Of these calls.
  // Sets every byte of every existing image.
  void FillPixels(const std::function<std::byte()>& next);
  // Another world of the output's size.
  PF_LayerDef MakeOutput() {
    return MakeWorld(setup_.output, setup_.width, setup_.height, setup_.deep);
  }
  // Of a world's memory.
  std::uint64_t ChecksumOf(const PF_LayerDef& world) const;
  // Pointers that may be null.
  PF_InData* inPointer = nullptr;
  PF_OutData* outPointer = nullptr;
  PF_ParamDef** paramsPointer = nullptr;
  // The tables behind the suites.
  PF_ANSICallbacksSuite1 ansiSuite{};
  PF_ParamUtilsSuite3 paramUtilsSuite{};
  PF_Iterate8Suite1 iterate8Suite{};
  PF_iterate16Suite1 iterate16Suite{};
  PF_WorldSuite2 worldSuite{};

  // For the callbacks.
  PF_Err NoteCall();
  PF_LayerDef MakeWorld(WorldKind kind, A_long width, A_long height, bool deep);
  void Forget(const void* data);
  void* PixelAt(const PF_LayerDef& world, A_long x, A_long y, std::size_t bytes) const;
  const Setup& GetSetup() const { return setup_; }
  PF_LayerDef customRecord{};
  int newWorlds = 0;
  int liveWorlds = 0;
  int openSuites = 0;
  int openCheckouts = 0;
  void AddRecord(const PF_ParamDef& record);

 private:
  PF_EntryPoint entryPoint_;
  Setup setup_;
  std::vector<std::unique_ptr<GuardedPixels>> pixels_;
  std::vector<PF_ParamDef> records_;
  const GuardedPixels* outputPixels_ = nullptr;
};

}  // namespace vitrell::reliability

#endif  // VITRELL_RELIABILITY_RAW_HOST_H_
