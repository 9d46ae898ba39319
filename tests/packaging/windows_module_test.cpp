// The finished module for Windows, asked for its resources by the system's own functions.
#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <stdexcept>
#include <string>

#include "packaging/windows_list_reader.h"

namespace vitrell::packaging {
namespace {

// The module as a file of data; nothing of it runs.
class ModuleFile {
 public:
  ModuleFile()
      : module_(LoadLibraryExA(VITRELL_MODULE_PATH, nullptr,
                               LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE)) {
    if (module_ == nullptr) throw std::runtime_error("the module cannot be opened");
  }
  ~ModuleFile() { FreeLibrary(module_); }
  ModuleFile(const ModuleFile&) = delete;
  ModuleFile& operator=(const ModuleFile&) = delete;

  std::string Resource(const char* name, const char* type) const {
    const HRSRC found = FindResourceA(module_, name, type);
    if (found == nullptr) throw std::runtime_error("the module has no such resource");
    const void* const data = LockResource(LoadResource(module_, found));
    return {static_cast<const char*>(data), SizeofResource(module_, found)};
  }

 private:
  HMODULE module_;
};

std::string VersionText(const std::string& name) {
  DWORD unused = 0;
  std::string block(GetFileVersionInfoSizeA(VITRELL_MODULE_PATH, &unused), '\0');
  if (GetFileVersionInfoA(VITRELL_MODULE_PATH, 0, static_cast<DWORD>(block.size()), block.data()) ==
      0) {
    return "no version information";
  }
  void* text = nullptr;
  UINT size = 0;
  const std::string path = "\\StringFileInfo\\040904B0\\" + name;
  if (VerQueryValueA(block.data(), path.c_str(), &text, &size) == 0) return "no " + name;
  return static_cast<const char*>(text);
}

TEST(WindowsModuleTest, HoldsThePropertyList) {
  std::map<std::string, std::string> values;
  for (const WindowsProperty& property :
       ReadWindowsList(ModuleFile().Resource(MAKEINTRESOURCEA(16000), "PiPL"))) {
    values[property.key] = property.data;
  }
  EXPECT_EQ(values.size(), 12U);
  EXPECT_EQ(values.at("kind"), "TKFe");
  EXPECT_EQ(values.at("name"), "\7Vitrell");
  EXPECT_STREQ(values.at("8664").c_str(), "EntryPointFunc");
}

TEST(WindowsModuleTest, HoldsVersionInformation) {
  EXPECT_EQ(VersionText("ProductName"), "Vitrell");
  EXPECT_EQ(VersionText("FileVersion"), VITRELL_PROJECT_VERSION);
  EXPECT_EQ(VersionText("ProductVersion"), VITRELL_PROJECT_VERSION);
  EXPECT_EQ(VersionText("OriginalFilename"), "Vitrell.aex");
}

}  // namespace
}  // namespace vitrell::packaging
