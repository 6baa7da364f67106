/** The fakes' folders are in QXPAF_FAKES_DIR; the loader looks for plain names in its "normal" one (LD_LIBRARY_PATH).
 */
#include "plugins/library_wrapper.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "plugins/arf_library.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"

namespace {

using namespace qxpaf;

/** A library of which nothing more than itself is wanted, or something it does not have. */
class TestLibrary : public LibraryWrapper
{
 public:
  explicit TestLibrary(const char* fileName, bool hasFunctions = true)
      : LibraryWrapper(fileName), hasFunctions_(hasFunctions)
  {
  }

  bool LoadFunctions(char* errText) override
  {
    ++resolved;
    if (!hasFunctions_ && errText != nullptr) std::strcpy(errText, "WantedFunction");
    return hasFunctions_;
  }

  int resolved = 0;

 private:
  bool hasFunctions_;
};

TEST(LibraryWrapper, LoadsOnceAndUnloads)
{
  TestLibrary library("libm.so.6");
  EXPECT_FALSE(library.IsLoaded());
  EXPECT_TRUE(library.Unload()) << "not loaded is unloaded";
  char errText[kLoadErrorSize] = "keep";
  EXPECT_EQ(0, library.Load(errText));
  EXPECT_TRUE(library.IsLoaded());
  EXPECT_EQ(0, library.Load(errText));
  EXPECT_EQ(1, library.resolved);
  EXPECT_STREQ("keep", errText);
  EXPECT_TRUE(library.Unload());
  EXPECT_FALSE(library.IsLoaded());
  EXPECT_EQ(0, library.Load(nullptr));
  EXPECT_EQ(2, library.resolved);
  EXPECT_TRUE(library.Unload());
}

TEST(LibraryWrapper, CopiesNameAndHandle)
{
  TestLibrary library("libm.so.6");
  ASSERT_EQ(0, library.Load(nullptr));
  const TestLibrary copy(library);
  EXPECT_TRUE(copy.IsLoaded());
  EXPECT_STREQ("libm.so.6", copy.FileName());
  EXPECT_TRUE(library.Unload());
  EXPECT_TRUE(copy.IsLoaded()) << "copies are not counted";
}

TEST(LibraryWrapper, CutsTheFileNameAt63Characters)
{
  for (const std::size_t length : {62U, 63U, 64U, 300U}) {
    const std::string name(length, 'n');
    EXPECT_EQ(name.substr(0, 63), TestLibrary(name.c_str()).FileName());
  }
}

TEST(LibraryWrapper, TellsTheLoadersWordsAndTheFileName)
{
  TestLibrary library("libqx_no_such_library.so");
  char errText[kLoadErrorSize];
  EXPECT_EQ(PAF_ERR_LIBRARY_NOT_LOADED, library.Load(errText));
  EXPECT_EQ(0, library.resolved);
  const std::string text = errText;
  EXPECT_EQ(0U, text.find("libqx_no_such_library.so: cannot open shared object file")) << text;
  EXPECT_EQ(text.size() - 26, text.rfind(". libqx_no_such_library.so")) << text;
  EXPECT_EQ(PAF_ERR_LIBRARY_NOT_LOADED, library.Load(nullptr));
  EXPECT_FALSE(library.IsLoaded());
}

TEST(LibraryWrapper, UnloadsALibraryThatLacksAFunction)
{
  TestLibrary library("libm.so.6", false);
  char errText[kLoadErrorSize];
  EXPECT_EQ(PAF_ERR_ENTRY_POINT_MISSING, library.Load(errText));
  EXPECT_STREQ("WantedFunction function doesn't exist in libm.so.6", errText);
  EXPECT_FALSE(library.IsLoaded());
  EXPECT_EQ(PAF_ERR_ENTRY_POINT_MISSING, library.Load(nullptr));
}

TEST(ArfLibWrapper, LowersTheBaseNameForTheFileOnly)
{
  const ArfLibWrapper library("QXArfAu_\xC3\x84");
  EXPECT_STREQ("libqxarfau_\xC3\x84.so", library.FileName());
  EXPECT_EQ("QXArfAu_\xC3\x84", library.BaseName());
  EXPECT_FALSE(library.IsLoaded());
  EXPECT_EQ(nullptr, library.Functions().getDb);
  EXPECT_EQ(nullptr, library.Functions().getSearcher);
  EXPECT_EQ(nullptr, library.Functions().canUnloadNow);
  EXPECT_EQ(nullptr, library.Functions().getOtherProperties);
}

TEST(ArfLibWrapper, ResolvesTheFourEntryPointsAndKeepsThemInCopies)
{
  ArfLibWrapper library("FakeOne");
  char errText[kLoadErrorSize] = "";
  ASSERT_EQ(0, library.Load(errText)) << errText;
  ArfLibWrapper copy(library);
  ArfLibWrapper assigned("other");
  assigned = copy;
  for (const ArfLibWrapper* each : {&library, &copy, &assigned}) {
    EXPECT_TRUE(each->IsLoaded());
    EXPECT_EQ("FakeOne", each->BaseName());
    EXPECT_NE(nullptr, each->Functions().getDb);
    EXPECT_NE(nullptr, each->Functions().getSearcher);
    EXPECT_NE(nullptr, each->Functions().canUnloadNow);
    EXPECT_NE(nullptr, each->Functions().getOtherProperties);
  }
  IArfDb* const db = library.Functions().getDb();
  ASSERT_NE(nullptr, db);
  db->Release();
  EXPECT_TRUE(library.Unload());
}

TEST(ArfLibWrapper, RefusesALibraryThatLacksAnEntryPoint)
{
  ArfLibWrapper library("FakeOdd");  // found in the folder of those without CanUnloadNow
  char errText[kLoadErrorSize] = "";
  EXPECT_EQ(PAF_ERR_ENTRY_POINT_MISSING, library.Load(errText));
  EXPECT_STREQ("CanUnloadNow function doesn't exist in libfakeodd.so", errText);
  EXPECT_FALSE(library.IsLoaded());
  EXPECT_EQ(nullptr, library.Functions().getDb) << "pointers into an unloaded library";
  EXPECT_EQ(nullptr, dlopen("libfakeodd.so", RTLD_LAZY | RTLD_NOLOAD)) << "still loaded";
}

}  // namespace
