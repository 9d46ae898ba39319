// Compact unwind tables, and their translation into call frame records.
#include "packaging/unwind_table.h"

#include <cstring>
#include <initializer_list>
#include <map>
#include <stdexcept>
#include <utility>

#include "packaging/processor.h"

namespace vitrell::packaging {
namespace {

constexpr std::uint32_t kRegularPage = 2;
constexpr std::uint32_t kCompressedPage = 3;

// Bits of an encoding, the same on every processor.
constexpr std::uint32_t kModeMask = 0x0F000000;
constexpr std::uint32_t kHasHandlers = 0x40000000;
constexpr std::uint32_t kPersonalityMask = 0x30000000;
constexpr int kPersonalityShift = 28;

class Table {
 public:
  Table(const std::uint8_t* section, std::uint64_t size) : section_(section), size_(size) {}

  std::vector<UnwindFunction> Read() {
    for (std::uint32_t i = 0; i < Word(24); ++i) {
      const std::uint32_t entry = Word(20) + 12 * i;
      if (i + 1 < Word(24)) ReadPage(Word(entry + 4), Word(entry));
      if (i + 1 == Word(24)) Close(Word(entry), Word(entry + 8));
    }
    return std::move(functions_);
  }

 private:
  template <typename T>
  T At(std::uint64_t offset) const {
    if (offset + sizeof(T) > size_) throw std::runtime_error("the unwind table is cut off");
    T value;
    std::memcpy(&value, section_ + offset, sizeof(value));
    return value;
  }
  std::uint32_t Word(std::uint64_t offset) const { return At<std::uint32_t>(offset); }
  std::uint16_t Half(std::uint64_t offset) const { return At<std::uint16_t>(offset); }

  void ReadPage(std::uint32_t page, std::uint32_t firstFunction) {
    const std::uint32_t kind = Word(page);
    if (kind != kRegularPage && kind != kCompressedPage) {
      throw std::runtime_error("a page of the unwind table is of no known kind");
    }
    const std::uint32_t entries = page + Half(page + 4);
    for (std::uint32_t i = 0; i < Half(page + 6); ++i) {
      if (kind == kRegularPage) {
        Add(Word(entries + 8 * i), Word(entries + 8 * i + 4));
      } else {
        const std::uint32_t entry = Word(entries + 4 * i);
        Add(firstFunction + (entry & 0xFFFFFF), Encoding(page, entry >> 24));
      }
    }
  }

  // The common encodings come first, the page's own behind them.
  std::uint32_t Encoding(std::uint32_t page, std::uint32_t index) const {
    const std::uint32_t common = Word(8);
    return index < common ? Word(Word(4) + 4 * index)
                          : Word(page + Half(page + 8) + 4 * (index - common));
  }

  void Add(std::uint64_t begin, std::uint32_t encoding) {
    if (!functions_.empty()) functions_.back().end = begin;
    const std::uint32_t personality = (encoding & kPersonalityMask) >> kPersonalityShift;
    functions_.push_back(
        {begin, begin, encoding, 0,
         personality == 0 ? 0 : std::uint64_t{Word(Word(12) + 4 * (personality - 1))}});
  }

  // The last index entry marks the end of the last function and of the list of handlers.
  void Close(std::uint32_t end, std::uint32_t handlersEnd) {
    if (functions_.empty()) return;
    functions_.back().end = end;
    std::map<std::uint64_t, std::uint64_t> handlers;
    for (std::uint32_t at = Word(Word(20) + 8); at + 8 <= handlersEnd; at += 8) {
      handlers[Word(at)] = Word(at + 4);
    }
    for (UnwindFunction& function : functions_) {
      if ((function.encoding & kHasHandlers) != 0) {
        function.exceptions = handlers.at(function.begin);
      }
    }
  }

  const std::uint8_t* section_;
  std::uint64_t size_;
  std::vector<UnwindFunction> functions_;
};

// Appends little-endian values.
class Writer {
 public:
  template <typename T>
  Writer& Put(T value) {
    const auto* const from = reinterpret_cast<const std::uint8_t*>(&value);
    bytes.insert(bytes.end(), from, from + sizeof(value));
    return *this;
  }
  Writer& Bytes(std::initializer_list<int> values) {
    for (const int value : values) bytes.push_back(static_cast<std::uint8_t>(value));
    return *this;
  }
  // Ends the record that begins at `start` with its length: no-operations up to eight bytes.
  void Close(std::size_t start) {
    while ((bytes.size() - start) % 8 != 4) bytes.push_back(0);
    const auto length = static_cast<std::uint32_t>(bytes.size() - start - 4);
    std::memcpy(bytes.data() + start, &length, sizeof(length));
  }

  std::vector<std::uint8_t> bytes;
};

constexpr int kOffset = 0x80;          // With the register's number in it.
constexpr int kOffsetExtended = 0x05;  // Before a register's number of more than 6 bits.
constexpr int kDefineFrame = 0x0C;

// Return address at CFA - 8, the caller's frame pointer at CFA - 16, CFA = frame pointer + 16.
void PutCommonRecord(std::uint64_t personality, Writer* out) {
  const std::size_t start = out->bytes.size();
  out->Put(std::uint32_t{0}).Put(std::uint32_t{0});
  out->Bytes({1, 'z', 'P', 'L', 'R', 0, 1, 0x78, kFrameRules.returnAddress, 11});
  out->Bytes({0}).Put(personality).Bytes({0, 0});  // All addresses are absolute.
  out->Bytes({kDefineFrame, kFrameRules.framePointer, 16});
  out->Bytes({kOffset | kFrameRules.framePointer, 2, kOffset | kFrameRules.returnAddress, 1});
  out->Close(start);
}

// Numbers stay below 128 and distances below 2^14: one and two bytes of LEB128.
void PutSavedRegisters(std::uint32_t encoding, Writer* out) {
  for (const SavedRegister& saved : SavedRegisters(encoding)) {
    if (saved.number < 64) {
      out->Bytes({kOffset | saved.number});
    } else {
      out->Bytes({kOffsetExtended, saved.number});
    }
    out->Bytes(
        {static_cast<int>(saved.distance & 0x7F) | 0x80, static_cast<int>(saved.distance >> 7)});
  }
}

}  // namespace

std::vector<UnwindFunction> ReadCompactUnwind(const std::uint8_t* section, std::uint64_t size) {
  return Table(section, size).Read();
}

std::vector<std::uint8_t> CallFrameRecords(const std::vector<UnwindFunction>& functions,
                                           const std::uint8_t* base) {
  Writer out;
  const auto origin = reinterpret_cast<std::uint64_t>(base);
  for (const UnwindFunction& function : functions) {
    if ((function.encoding & kModeMask) != kFrameRules.mode) {
      if (function.exceptions != 0) throw std::runtime_error("handlers without a frame pointer");
      continue;
    }
    std::uint64_t personality = 0;
    if (function.personality != 0) {
      std::memcpy(&personality, base + function.personality, sizeof(personality));
    }
    const std::size_t common = out.bytes.size();
    PutCommonRecord(personality, &out);
    const std::size_t start = out.bytes.size();
    out.Put(std::uint32_t{0}).Put(static_cast<std::uint32_t>(start + 4 - common));
    out.Put(origin + function.begin).Put(function.end - function.begin);
    out.Bytes({8}).Put(function.exceptions == 0 ? 0 : origin + function.exceptions);
    PutSavedRegisters(function.encoding, &out);
    out.Close(start);
  }
  return std::move(out.bytes);
}

}  // namespace vitrell::packaging
