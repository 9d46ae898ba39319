// A Mach-O bundle of this processor, mapped into a Linux process.
#ifndef VITRELL_TESTS_PACKAGING_MAPPED_IMAGE_H_
#define VITRELL_TESTS_PACKAGING_MAPPED_IMAGE_H_

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace llvm::object {
class MachOObjectFile;
}

namespace vitrell::packaging {

// Maps this processor's slice of a universal file, adjusts its pointers, binds what it imports to
// this system's C library and to LLVM's C++ runtime, registers its unwind tables and runs its
// initialisers. The image stays mapped until the process ends, as its destructors run only then.
// Thread-local variables are not served: what they import is unknown.
// Throws std::runtime_error with what is wrong.
class MappedImage {
 public:
  explicit MappedImage(const std::filesystem::path& path);

  // The address of an exported symbol, given without the leading underscore.
  void* Find(const std::string& name) const;

  bool Contains(const void* address) const;

  // The imported symbols that were bound, each as "library:name".
  const std::vector<std::string>& Imports() const { return imports_; }

 private:
  void MapSegments(const llvm::object::MachOObjectFile& object);
  void Rebase(llvm::object::MachOObjectFile& object);
  void Bind(llvm::object::MachOObjectFile& object);
  void RegisterUnwindTables(const llvm::object::MachOObjectFile& object);
  void RunInitialisers(const llvm::object::MachOObjectFile& object);
  void ReadExports(const llvm::object::MachOObjectFile& object);

  std::uint8_t* At(std::uint64_t address) const { return base_ + address; }

  std::uint8_t* base_ = nullptr;  // Where the image's address 0 lies.
  std::uint64_t size_ = 0;
  std::vector<std::string> imports_;
  std::vector<std::pair<std::string, void*>> exports_;
};

}  // namespace vitrell::packaging

#endif  // VITRELL_TESTS_PACKAGING_MAPPED_IMAGE_H_
