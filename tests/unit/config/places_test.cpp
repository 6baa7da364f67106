/** In which order the places of the configuration file are tried: fopen itself tells. */
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "config/config_file.h"
#include "config/morvex_config.h"
#include "qxpaf/registry.h"
#include "support/config_sandbox.h"
#include "support/temp_dir.h"
#include "unit/config/breaking_stream.h"

namespace {

const std::string kMachineConfig = "/usr/etc/.morvex";

/** While alive, notes what is opened and stands in for the machine's configuration file. */
struct FopenSpy
{
  FopenSpy() { current = this; }
  ~FopenSpy() { current = nullptr; }
  FopenSpy(const FopenSpy&) = delete;
  FopenSpy& operator=(const FopenSpy&) = delete;

  std::vector<std::string> paths;
  std::vector<std::string> modes;
  std::string machineConfig = "/nonexistent/.morvex";
  std::optional<std::string> brokenMachineConfig;  // read in place of machineConfig up to its end, which is an error

  static FopenSpy* current;
};

FopenSpy* FopenSpy::current = nullptr;

FILE* RealFopen(const char* path, const char* mode)
{
  using Function = FILE* (*)(const char*, const char*);
#ifdef __USE_FILE_OFFSET64
  static const Function real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "fopen64"));
#else
  static const Function real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "fopen"));
#endif
  return real(path, mode);
}

}  // namespace

/** Takes the place of the C library's function in this program. */
FILE* fopen(const char* path, const char* mode)
{
  FopenSpy* spy = FopenSpy::current;
  if (spy == nullptr) return RealFopen(path, mode);
  spy->paths.emplace_back(path);
  spy->modes.emplace_back(mode);
  if (path == kMachineConfig && spy->brokenMachineConfig) return OpenBreakingStream(*spy->brokenMachineConfig);
  return RealFopen(path == kMachineConfig ? spy->machineConfig.c_str() : path, mode);
}

namespace {

using std::string;
using test_support::ConfigSandbox;
using test_support::EnvValue;
using testing::Each;
using testing::ElementsAre;

/** Which of the four places hold a file, and which of them is to be used (4: none). */
struct PlacesRow
{
  bool work, named, home, machine;
  int used;
};

void PrintTo(const PlacesRow& row, std::ostream* out)
{
  *out << row.work << row.named << row.home << row.machine << " uses " << row.used;
}

class ConfigPlaces : public testing::TestWithParam<PlacesRow>
{
 protected:
  ConfigPlaces()
  {
    const PlacesRow& row = GetParam();
    if (row.work) sandbox_.Dir().Write("work/.morvex", "place=0\nkey/place=0\n");
    if (row.named) sandbox_.Dir().Write("named", "place=1\nkey/place=1\n");
    if (row.home) sandbox_.Dir().Write("home/.morvex", "place=2\nkey/place=2\n");
    if (row.machine) spy_.machineConfig = sandbox_.Dir().Write("machine", "place=3\nkey/place=3\n");
    spy_.paths.clear();
    spy_.modes.clear();
  }

  std::vector<string> PathsUpTo(int used) const
  {
    std::vector<string> all = {".morvex", sandbox_.Dir().Path("named"), sandbox_.Dir().Path("home/.morvex"),
                               kMachineConfig};
    all.resize(std::min<std::size_t>(all.size(), static_cast<std::size_t>(used) + 1));
    return all;
  }

  ConfigSandbox sandbox_;
  EnvValue named_{"MORVEX_CONFIG_FILE", sandbox_.Dir().Path("named")};
  FopenSpy spy_;
};

TEST_P(ConfigPlaces, TheReaderStopsAtTheFirstThatOpens)
{
  const int used = GetParam().used;
  qxpaf::MorvexConfig config;
  const bool opened = config.OpenKey("", 0);
  EXPECT_EQ(spy_.paths, PathsUpTo(used));
  EXPECT_THAT(spy_.modes, Each(string("r")));
  EXPECT_EQ(opened, used < 4);
  string value;
  EXPECT_EQ(config.ReadValue("place", value), used < 4);
  EXPECT_EQ(value, used < 4 ? std::to_string(used) : "");
  EXPECT_EQ(config.LastError(), used < 4 ? 0 : kRegistryNoFile);
}

TEST_P(ConfigPlaces, TheAccessorsStopAtTheFirstThatOpens)
{
  const int used = GetParam().used;
  char value[8] = "";
  int size = sizeof value;
  EXPECT_EQ(LookUpRegistry_("", "place", value, size, false), used < 4 ? 0 : kRegistryNoFile);
  EXPECT_EQ(spy_.paths, PathsUpTo(used));
  EXPECT_STREQ(value, used < 4 ? std::to_string(used).c_str() : "");
  spy_.paths.clear();
  char** names = nullptr;
  char** values = nullptr;
  EnumerateRegistry_("key", &names, &values);
  EXPECT_EQ(spy_.paths, PathsUpTo(used));
  ASSERT_EQ(names != nullptr, used < 4);
  if (names == nullptr) return;
  EXPECT_EQ(values[0], std::to_string(used));
  delete[] names[0];
  delete[] values[0];
  delete[] names;
  delete[] values;
}

TEST_P(ConfigPlaces, TheSearchTellsThePath)
{
  const int used = GetParam().used;
  EXPECT_EQ(qxpaf::FindConfigFile(), used < 4 ? PathsUpTo(used).back() : "");
  EXPECT_EQ(spy_.paths, PathsUpTo(used));
}

INSTANTIATE_TEST_SUITE_P(Rows, ConfigPlaces,
                         testing::Values(PlacesRow{true, true, true, true, 0}, PlacesRow{true, false, false, false, 0},
                                         PlacesRow{false, true, true, true, 1}, PlacesRow{false, true, false, false, 1},
                                         PlacesRow{false, false, true, true, 2},
                                         PlacesRow{false, false, true, false, 2},
                                         PlacesRow{false, false, false, true, 3},
                                         PlacesRow{false, false, false, false, 4}));

/** The paths tried when there is no file anywhere. */
std::vector<string> TriedByReader()
{
  FopenSpy spy;
  qxpaf::MorvexConfig config;
  EXPECT_FALSE(config.OpenKey("", 0));
  EXPECT_EQ(config.LastError(), kRegistryNoFile);
  return spy.paths;
}

std::vector<string> TriedByAccessor()
{
  FopenSpy spy;
  int size = 0;
  EXPECT_EQ(LookUpRegistry_("", "x", nullptr, size, false), kRegistryNoFile);
  return spy.paths;
}

TEST(ConfigPlacesTried, UnsetAndEmptyVariablesArePassedOver)
{
  const ConfigSandbox sandbox;
  for (const std::optional<string>& nothing : {std::optional<string>(), std::optional<string>("")}) {
    const EnvValue named("MORVEX_CONFIG_FILE", nothing);
    const EnvValue home("HOME", nothing);
    EXPECT_THAT(TriedByReader(), ElementsAre(".morvex", kMachineConfig));
    EXPECT_THAT(TriedByAccessor(), ElementsAre(".morvex", kMachineConfig));
  }
}

TEST(ConfigPlacesTried, ASeparatorAtTheEndOfHomeIsNotDoubled)
{
  const ConfigSandbox sandbox;
  struct Row
  {
    const char* home;
    const char* path;
  };
  for (const Row& row :
       {Row{"/nonexistent/u", "/nonexistent/u/.morvex"}, Row{"/nonexistent/u/", "/nonexistent/u/.morvex"},
        Row{"/nonexistent//", "/nonexistent//.morvex"}, Row{"/", "/.morvex"}, Row{"u", "u/.morvex"}}) {
    const EnvValue home("HOME", row.home);
    EXPECT_THAT(TriedByReader(), ElementsAre(".morvex", row.path, kMachineConfig));
    EXPECT_THAT(TriedByAccessor(), ElementsAre(".morvex", row.path, kMachineConfig));
  }
}

TEST(ConfigPlacesTried, TheAccessorsPassOverALongHome)
{
  const ConfigSandbox sandbox;
  for (const std::size_t length : {std::size_t{245}, std::size_t{246}, std::size_t{247}, std::size_t{1000}}) {
    const EnvValue home("HOME", "/" + string(length - 1, 'h'));
    const string path = "/" + string(length - 1, 'h') + "/.morvex";
    EXPECT_THAT(TriedByReader(), ElementsAre(".morvex", path, kMachineConfig));
    if (length + 8 < 255) {
      EXPECT_THAT(TriedByAccessor(), ElementsAre(".morvex", path, kMachineConfig));
    } else {
      EXPECT_THAT(TriedByAccessor(), ElementsAre(".morvex", kMachineConfig));
    }
  }
}

TEST(ConfigPlacesTried, AHomeBeyondThePathsOfTheSystemIsHarmless)
{
  const ConfigSandbox sandbox;
  const std::size_t longest = PATH_MAX - sizeof "/.morvex";
  const EnvValue home("HOME", string(longest, 'h'));
  EXPECT_THAT(TriedByReader(), ElementsAre(".morvex", string(longest, 'h') + "/.morvex", kMachineConfig));
  const EnvValue longer("HOME", string(longest + 1, 'h'));
  EXPECT_THAT(TriedByReader(), ElementsAre(".morvex", kMachineConfig));
}

TEST(ConfigPlacesTried, AFailedLoadIsNotTriedAgain)
{
  const ConfigSandbox sandbox;
  FopenSpy spy;
  qxpaf::MorvexConfig config;
  EXPECT_FALSE(config.OpenKey("a", 0));
  const std::size_t tried = spy.paths.size();
  EXPECT_FALSE(config.OpenKey("b", 0));
  EXPECT_EQ(config.LastError(), kRegistryNoFile);
  EXPECT_EQ(spy.paths.size(), tried);
}

TEST(ConfigPlacesTried, NothingIsOpenedBeforeTheFirstKey)
{
  const ConfigSandbox sandbox;
  sandbox.Configure("a=1\n");
  FopenSpy spy;
  qxpaf::MorvexConfig config;
  string value;
  EXPECT_FALSE(config.ReadValue("a", value));
  EXPECT_EQ(config.LastError(), kRegistryNotFound);
  EXPECT_TRUE(config.EnumerateKeys().empty());
  EXPECT_TRUE(spy.paths.empty());
}

TEST(ConfigPlacesTried, ChecksBeforeTheSearchOpenNothing)
{
  const ConfigSandbox sandbox;
  FopenSpy spy;
  int size = 0;
  EXPECT_EQ(LookUpRegistry_("k", "a/b", nullptr, size, false), kRegistryNotFound);
  EXPECT_EQ(LookUpRegistry_("k", string(254, 'n').c_str(), nullptr, size, false), kRegistryKeyTooLong);
  char** names = nullptr;
  char** values = nullptr;
  EnumerateRegistry_(string(255, 'k').c_str(), &names, &values);
  EXPECT_TRUE(spy.paths.empty());
}

TEST(ConfigReadError, LeavesTheReaderWithoutAnswersThoughLinesWereRead)
{
  const ConfigSandbox sandbox;
  FopenSpy spy;
  spy.brokenMachineConfig = "a=1\nk/b=2\n";
  qxpaf::MorvexConfig config;
  EXPECT_FALSE(config.OpenKey("k", 0));
  EXPECT_EQ(config.LastError(), kRegistryReadError);
  config.SetCurrentKey("");
  std::vector<string> names;
  std::vector<string> values;
  EXPECT_FALSE(config.EnumerateValues(names, values));
  EXPECT_TRUE(names.empty());
  EXPECT_TRUE(values.empty());
  EXPECT_TRUE(config.EnumerateKeys().empty());
  EXPECT_EQ(config.LastError(), kRegistryReadError);
  string value;
  EXPECT_FALSE(config.ReadValue("a", value));
  EXPECT_EQ(config.LastError(), kRegistryReadError);
}

TEST(ConfigReadError, LeavesTheAccessorsWithTheLinesBeforeIt)
{
  const ConfigSandbox sandbox;
  FopenSpy spy;
  spy.brokenMachineConfig = "k/a=1\nk/b=2\n";
  char value[8] = "";
  int size = sizeof value;
  EXPECT_EQ(LookUpRegistry_("k", "b", value, size, false), 0);
  EXPECT_STREQ(value, "2");
  EXPECT_EQ(LookUpRegistry_("k", "c", value, size, false), kRegistryNotFound);
}

}  // namespace
