// Plug-in libraries: which are loaded when, what the loader's text becomes, and when they are unloaded.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdio>
#include <cstring>
#include <fstream>

#include "blackbox/support/fake.h"
#include "blackbox/support/session.h"
#include "blackbox/support/workspace.h"
#include "qxpaf/paf.h"

namespace blackbox {
namespace {

constexpr const char* kLibraries[] = {"libqxarfau.so", "libqxarfnz.so", "libqxarfus.so", "libqxarfuk.so",
                                      "libqxarfint.so"};

class PluginLoadingTest : public testing::Test
{
 protected:
  PluginLoadingTest()
  {
    logPath = workspace.Root() + "/fake.log";
    setenv("QXPAF_FAKE_LOG", logPath.c_str(), 1);
  }

  /** The lines of the life-cycle log that contain a text, in order. */
  std::vector<std::string> Log(const std::string& text) const
  {
    std::ifstream file(logPath);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
      if (line.find(text) != std::string::npos) lines.push_back(line);
    }
    return lines;
  }

  Workspace workspace{std::vector<std::string>{}};
  std::string logPath;
};

TEST_F(PluginLoadingTest, NothingIsLoadedBeforeTheFirstOpen)
{
  EXPECT_EQ(pafClosePafId(1), PAF_ERR_INVALID_ID);
  EXPECT_EQ(pafUnloadPlugins(), 0);
  EXPECT_EQ(pafForceCloseAll(), 0);
  EXPECT_EQ(pafOpenArfId2(0, "AU.nowhere"), -PAF_ERR_NOT_CONFIGURED);
  for (const char* library : kLibraries) EXPECT_FALSE(IsLibraryLoaded(library)) << library;
}

TEST_F(PluginLoadingTest, OnlyTheNamedCountryIsLoadedAndItStaysLoadedAfterClosing)
{
  EXPECT_EQ(pafClosePafId(Open("UK./p")), 0);
  for (const char* library : kLibraries)
    EXPECT_EQ(IsLibraryLoaded(library), std::string(library) == "libqxarfuk.so") << library;
  EXPECT_EQ(pafClosePafId(Open("UK./p")), 0);
  EXPECT_EQ(Log("load"), std::vector<std::string>{"libqxarfuk.so load"}) << "loaded once";
}

TEST_F(PluginLoadingTest, UnloadPluginsUnloadsWhatIsIdle)
{
  const int used = Open("AU./p");
  EXPECT_EQ(pafClosePafId(Open("NZ./p2")), 0);
  EXPECT_EQ(pafClosePafId(Open("DLL:FakeOne;/p3")), 0);
  EXPECT_EQ(pafUnloadPlugins(), 0);
  EXPECT_TRUE(IsLibraryLoaded("libqxarfau.so"));
  EXPECT_FALSE(IsLibraryLoaded("libqxarfnz.so"));
  EXPECT_FALSE(IsLibraryLoaded("libfakeone.so"));
  EXPECT_EQ(pafGetFindStatusId(used), 0) << "the used one still serves";
  EXPECT_EQ(pafClosePafId(used), 0);
  EXPECT_EQ(pafUnloadPlugins(), 0);
  EXPECT_FALSE(IsLibraryLoaded("libqxarfau.so"));
  EXPECT_EQ(Log("VIOLATION"), std::vector<std::string>{});
}

TEST_F(PluginLoadingTest, AnUnloadedPluginIsLoadedAgainWhenNeeded)
{
  for (int time = 1; time <= 3; ++time) {
    for (const char* name : {"AU./p", "DLL:FakeOne;/q"}) EXPECT_EQ(pafClosePafId(Open(name)), 0);
    EXPECT_EQ(pafUnloadPlugins(), 0);
    EXPECT_FALSE(IsLibraryLoaded("libqxarfau.so"));
    EXPECT_FALSE(IsLibraryLoaded("libfakeone.so"));
  }
  EXPECT_EQ(Log("unload").size(), 6u);
}

TEST_F(PluginLoadingTest, PluginsAreAskedInAFixedOrder)
{
  for (const char* name : {"DLL:FakeTwo;/1", "INT./2", "UK./3", "DLL:FakeOne;/4", "US./5", "NZ./6", "AU./7"})
    EXPECT_EQ(pafClosePafId(Open(name)), 0);
  EXPECT_EQ(pafUnloadPlugins(), 0);
  const std::vector<std::string> expected = {"libqxarfau.so CanUnloadNow",  "libqxarfnz.so CanUnloadNow",
                                             "libqxarfus.so CanUnloadNow",  "libqxarfuk.so CanUnloadNow",
                                             "libqxarfint.so CanUnloadNow", "libfaketwo.so CanUnloadNow",
                                             "libfakeone.so CanUnloadNow"};
  EXPECT_EQ(Log("CanUnloadNow"), expected);
  EXPECT_EQ(pafUnloadPlugins(), 0);
  EXPECT_EQ(Log("CanUnloadNow").size(), expected.size()) << "what is not loaded is not asked";
}

TEST_F(PluginLoadingTest, ANamedPluginIsOneWhateverTheCaseOfItsName)
{
  for (const char* name : {"DLL:FakeOne;/1", "dll:fakeone;/2", "DLL:FAKEONE;/3"})
    EXPECT_EQ(pafClosePafId(Open(name)), 0);
  EXPECT_EQ(pafUnloadPlugins(), 0);
  EXPECT_EQ(Log("CanUnloadNow").size(), 1u);
  EXPECT_FALSE(IsLibraryLoaded("libfakeone.so"));
}

TEST_F(PluginLoadingTest, TheAnswerOfCanUnloadNowDecidesNotTheInstances)
{
  {
    Fake fake("libfakeone.so");
    fake.Answer(kFakeCanUnloadNow, 0);
    EXPECT_EQ(pafClosePafId(Open("DLL:FakeOne;/p")), 0);
    EXPECT_EQ(pafUnloadPlugins(), 0);
  }
  EXPECT_TRUE(IsLibraryLoaded("libfakeone.so"));
  for (int yes : {1, -1, 100}) {
    {
      Fake fake("libqxarfau.so");
      EXPECT_EQ(pafClosePafId(Open("AU./p")), 0);
      fake.Answer(kFakeCanUnloadNow, yes);
      EXPECT_EQ(pafUnloadPlugins(), 0);
    }
    EXPECT_FALSE(IsLibraryLoaded("libqxarfau.so")) << yes;
  }
}

TEST_F(PluginLoadingTest, AMissingNamedPluginGivesTheLoadersTextAndTheFileName)
{
  struct Row
  {
    const char* name;
    const char* file;
  };
  for (const Row& row : {Row{"DLL:FakeNowhere;/p", "libfakenowhere.so"}, Row{"dll:FAKENOWHERE", "libfakenowhere.so"},
                         Row{"DLL:", "lib.so"}, Row{"DLL:;/p", "lib.so"}, Row{"DLL:a.b c;x", "liba.b c.so"}}) {
    ASSERT_EQ(dlopen(row.file, RTLD_LAZY), nullptr);
    const std::string expected = std::string(dlerror()) + ". " + row.file;
    EXPECT_EQ(pafOpenArfId2(0, row.name), -PAF_ERR_LIBRARY_NOT_LOADED) << row.name;
    EXPECT_EQ(Describe(PAF_ERR_LIBRARY_NOT_LOADED), expected) << row.name;
  }
}

TEST_F(PluginLoadingTest, AFileNameOfANamedPluginIsCutTo63Characters)
{
  for (size_t length : {56u, 57u, 58u, 63u, 64u, 200u, 5000u}) {
    const std::string file = ("lib" + std::string(length, 'n') + ".so").substr(0, 63);
    ASSERT_EQ(dlopen(file.c_str(), RTLD_LAZY), nullptr);
    const std::string expected = std::string(dlerror()) + ". " + file;
    EXPECT_EQ(pafOpenArfId2(0, ("DLL:" + std::string(length, 'N')).c_str()), -PAF_ERR_LIBRARY_NOT_LOADED);
    EXPECT_EQ(Describe(PAF_ERR_LIBRARY_NOT_LOADED), expected) << length;
  }
}

/** A directory of exactly so many characters below the workspace, with a text file in it that calls itself a library.
 */
std::string DirectoryOfLength(const Workspace& workspace, size_t length)
{
  std::string path = workspace.Root() + "/";
  while (path.size() + 1 < length) path.append(std::min<size_t>(100, length - path.size() - 1), 'd').append("/");
  path.resize(length, 'd');
  path.back() = 'd';
  workspace.WriteFile(path.substr(workspace.Root().size() + 1) + "/libqxarfau.so", "no library\n");
  return path;
}

/** The lines that a program prints. */
std::vector<std::string> OutputOf(const std::string& command)
{
  std::vector<std::string> lines;
  FILE* pipe = popen(command.c_str(), "r");
  char line[4096];
  while (fgets(line, sizeof line, pipe) != nullptr) lines.push_back(std::string(line, std::strlen(line) - 1));
  EXPECT_EQ(pclose(pipe), 0);
  return lines;
}

TEST_F(PluginLoadingTest, TheFileNameFollowsTheLoadersTextWhenBothFitIn254Characters)
{
  const std::string file = "libqxarfau.so";
  const std::string reason = "/" + file + ": file too short";
  const size_t longestWithName = 254 - 2 - file.size() - reason.size();
  for (size_t length : {longestWithName - 1, longestWithName, longestWithName + 1, 254 - reason.size(),
                        255 - reason.size(), size_t{400}}) {
    const std::string directory = DirectoryOfLength(workspace, length);
    const auto lines = OutputOf("LD_LIBRARY_PATH=" + directory + " " OPEN_PROGRAM " AU./p");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], "990");
    const std::string message = directory + reason;
    EXPECT_EQ(lines[1], length <= longestWithName ? message + ". " + file : message.substr(0, 254)) << length;
  }
}

}  // namespace
}  // namespace blackbox
