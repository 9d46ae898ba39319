// Mapping of Mach-O bundles.
#include "packaging/mapped_image.h"

#include <llvm/Object/MachO.h>
#include <llvm/Object/MachOUniversal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "packaging/processor.h"
#include "packaging/system_symbols.h"
#include "packaging/unwind_table.h"

namespace vitrell::packaging {
namespace {

using llvm::object::MachOObjectFile;

template <typename T>
T Require(llvm::Expected<T> value) {
  if (!value) throw std::runtime_error(llvm::toString(value.takeError()));
  return std::move(*value);
}

void RequireNone(llvm::Error error) {
  if (error) throw std::runtime_error(llvm::toString(std::move(error)));
}

std::vector<llvm::MachO::segment_command_64> Segments(const MachOObjectFile& object) {
  std::vector<llvm::MachO::segment_command_64> segments;
  for (const auto& command : object.load_commands()) {
    if (command.C.cmd == llvm::MachO::LC_SEGMENT_64) {
      segments.push_back(object.getSegment64LoadCommand(command));
    }
  }
  return segments;
}

std::vector<llvm::MachO::section_64> SectionsOfType(const MachOObjectFile& object,
                                                    std::uint32_t type) {
  std::vector<llvm::MachO::section_64> sections;
  for (const llvm::object::SectionRef& section : object.sections()) {
    const auto record = object.getSection64(section.getRawDataRefImpl());
    if ((record.flags & llvm::MachO::SECTION_TYPE) == type) sections.push_back(record);
  }
  return sections;
}

// Linux protects by the same bits in another order.
int Protection(std::uint32_t wanted) {
  return ((wanted & llvm::MachO::VM_PROT_READ) != 0 ? PROT_READ : 0) |
         ((wanted & llvm::MachO::VM_PROT_WRITE) != 0 ? PROT_WRITE : 0) |
         ((wanted & llvm::MachO::VM_PROT_EXECUTE) != 0 ? PROT_EXEC : 0);
}

// C names carry an underscore; the linker's own helpers do not.
std::string WithoutUnderscore(llvm::StringRef name) {
  name.consume_front("_");
  return name.str();
}

}  // namespace

MappedImage::MappedImage(const std::filesystem::path& path) {
  auto binary = Require(llvm::object::createBinary(path.string()));
  const auto* const universal =
      llvm::dyn_cast<llvm::object::MachOUniversalBinary>(binary.getBinary());
  if (universal == nullptr) throw std::runtime_error(path.string() + " has no slices");
  const auto object = Require(universal->getMachOObjectForArch(kSlice));
  MapSegments(*object);
  Rebase(*object);
  Bind(*object);
  RegisterUnwindTables(*object);
  ReadExports(*object);
  for (const auto& segment : Segments(*object)) {
    if (mprotect(At(segment.vmaddr), segment.vmsize, Protection(segment.initprot)) != 0) {
      throw std::runtime_error("a segment cannot be protected");
    }
  }
  RunInitialisers(*object);
}

void* MappedImage::Find(const std::string& name) const {
  const auto found = std::find_if(exports_.begin(), exports_.end(),
                                  [&](const auto& symbol) { return symbol.first == name; });
  if (found == exports_.end()) throw std::runtime_error("the image exports no " + name);
  return found->second;
}

bool MappedImage::Contains(const void* address) const {
  return address >= base_ && address < base_ + size_;
}

void MappedImage::MapSegments(const MachOObjectFile& object) {
  for (const auto& segment : Segments(object)) {
    size_ = std::max(size_, std::uint64_t{segment.vmaddr} + segment.vmsize);
  }
  void* const memory =
      mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("no memory for the image");
  base_ = static_cast<std::uint8_t*>(memory);
  const llvm::StringRef file = object.getData();
  for (const auto& segment : Segments(object)) {
    std::memcpy(At(segment.vmaddr), file.data() + segment.fileoff, segment.filesize);
  }
}

void MappedImage::Rebase(MachOObjectFile& object) {
  llvm::Error error = llvm::Error::success();
  for (const auto& entry : object.rebaseTable(error)) {
    if (entry.typeName() != "pointer") throw std::runtime_error("a rebase of another kind");
    std::uint64_t pointer = 0;
    std::memcpy(&pointer, At(entry.address()), sizeof(pointer));
    pointer += reinterpret_cast<std::uint64_t>(base_);
    std::memcpy(At(entry.address()), &pointer, sizeof(pointer));
  }
  RequireNone(std::move(error));
}

void MappedImage::Bind(MachOObjectFile& object) {
  const auto bindAll = [&](auto entries) {
    for (const llvm::object::MachOBindEntry& entry : entries) {
      llvm::StringRef library;
      if (entry.ordinal() < 1 ||
          object.getLibraryShortNameByIndex(static_cast<unsigned>(entry.ordinal() - 1), library)) {
        throw std::runtime_error("a symbol of no library: " + entry.symbolName().str());
      }
      const std::string name = WithoutUnderscore(entry.symbolName());
      const std::uint64_t address =
          reinterpret_cast<std::uint64_t>(SystemSymbol(library.str(), name)) +
          static_cast<std::uint64_t>(entry.addend());
      std::memcpy(At(entry.address()), &address, sizeof(address));
      imports_.push_back(library.str() + ":" + name);
    }
  };
  llvm::Error error = llvm::Error::success();
  bindAll(object.bindTable(error));
  RequireNone(std::move(error));
  llvm::Error lazyError = llvm::Error::success();
  bindAll(object.lazyBindTable(lazyError));
  RequireNone(std::move(lazyError));
  llvm::Error weakError = llvm::Error::success();
  const auto weak = object.weakBindTable(weakError);
  if (weak.begin() != weak.end()) throw std::runtime_error("weak symbols are not known");
  RequireNone(std::move(weakError));
}

void MappedImage::RegisterUnwindTables(const MachOObjectFile& object) {
  for (const llvm::object::SectionRef& section : object.sections()) {
    if (Require(section.getName()) == "__unwind_info") {
      const auto functions = ReadCompactUnwind(At(section.getAddress()), section.getSize());
      RegisterCallFrames(CallFrameRecords(functions, base_));
    }
  }
}

void MappedImage::RunInitialisers(const MachOObjectFile& object) {
  using Initialiser = void (*)(int, const char**, const char**, const char**);
  const char* nothing[] = {nullptr};
  for (const auto& section : SectionsOfType(object, llvm::MachO::S_MOD_INIT_FUNC_POINTERS)) {
    const auto* const functions = reinterpret_cast<const Initialiser*>(At(section.addr));
    for (std::uint64_t i = 0; i < section.size / sizeof(Initialiser); ++i) {
      functions[i](0, nothing, nothing, nothing);
    }
  }
}

void MappedImage::ReadExports(const MachOObjectFile& object) {
  llvm::Error error = llvm::Error::success();
  for (const auto& entry : object.exports(error)) {
    exports_.emplace_back(WithoutUnderscore(entry.name()), At(entry.address()));
  }
  RequireNone(std::move(error));
}

}  // namespace vitrell::packaging
