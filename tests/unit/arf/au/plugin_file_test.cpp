// The plug-in as a file: what it exports and that it works when it is loaded.
#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>
#include <link.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "qxpaf/arf_au.h"
#include "qxpaf/arf_plugin.h"
#include "unit/arf/match/engine_fixture.h"

namespace {

/** The names of the defined dynamic symbols of a library. */
std::set<std::string> ExportsOf(const std::string& path)
{
  std::ifstream file(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const auto at = [&](std::size_t offset) { return static_cast<const void*>(bytes.data() + offset); };
  const auto* header = static_cast<const ElfW(Ehdr)*>(at(0));
  const auto* sections = static_cast<const ElfW(Shdr)*>(at(header->e_shoff));
  std::set<std::string> names;
  for (std::size_t i = 0; i < header->e_shnum; ++i) {
    if (sections[i].sh_type != SHT_DYNSYM) continue;
    const auto* symbols = static_cast<const ElfW(Sym)*>(at(sections[i].sh_offset));
    const char* strings = bytes.data() + sections[sections[i].sh_link].sh_offset;
    for (std::size_t k = 0; k < sections[i].sh_size / sizeof *symbols; ++k)
      if (symbols[k].st_shndx != SHN_UNDEF) names.insert(strings + symbols[k].st_name);
  }
  return names;
}

template <class Function>
Function Symbol(void* library, const char* name)
{
  return reinterpret_cast<Function>(dlsym(library, name));
}

TEST(PluginFile, ExportsItsEntryPointsOnly)
{
  EXPECT_EQ(ExportsOf(ARF_PLUGIN),
            (std::set<std::string>{"GetDb", "GetSearcher", "CanUnloadNow", "GetOtherProperties"}));
}

TEST(PluginFile, IsLoadedUsedAndUnloaded)
{
  const test_support::TempDir dir;
  const std::string directory = arf_test::BuildDatabaseFrom(dir, arf_test::TestDataFile("lookup_addresses.csv"));
  for (int round = 0; round < 2; ++round) {
    void* const library = dlopen(ARF_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto canUnload = Symbol<int (*)()>(library, "CanUnloadNow");
    EXPECT_NE(canUnload(), 0);
    IArfDb* const database = Symbol<IArfDb* (*)()>(library, "GetDb")();
    char text[255] = "";
    ASSERT_EQ(database->Open(directory.c_str(), 1, text, sizeof text), 0) << text;
    IArfSearcher* const searcher = Symbol<IArfSearcher* (*)(IArfDb*)>(library, "GetSearcher")(database);
    ASSERT_NE(searcher, nullptr);
    EXPECT_EQ(searcher->LookupAddress("Caf\xE9 x, 3/12-14 George St, Sydney", text, sizeof text, 1), 0);
    EXPECT_STREQ(text, "30000013");
    EXPECT_EQ(canUnload(), 0);
    searcher->Release();
    database->Close();
    database->Release();
    EXPECT_NE(canUnload(), 0);
    EXPECT_EQ(dlclose(library), 0);
  }
}

}  // namespace
