/** The registry over fake plug-in libraries, and what is not reached through the exported functions yet. */
#include "plugins/open_databases.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

#include "fakes/fake_control.h"
#include "plugins/database_name.h"
#include "qxpaf/arf_plugin.h"
#include "qxpaf/paf.h"
#include "support/config_sandbox.h"

namespace {

using namespace qxpaf;

/** Keeps a fake library loaded and gives its controls, back in the state of loading. */
class Fake
{
 public:
  explicit Fake(const char* file) : handle_(dlopen(file, RTLD_LAZY))
  {
    if (handle_ == nullptr) throw std::runtime_error(dlerror());
    control_ = reinterpret_cast<FakeControlFunction>(dlsym(handle_, "fake_control"))();
    control_->reset();
    control_->clearCalls();
  }
  ~Fake()
  {
    control_->reset();
    dlclose(handle_);
  }
  Fake(const Fake&) = delete;
  Fake& operator=(const Fake&) = delete;

  const FakeControl* operator->() const { return control_; }

  std::string Sequence() const
  {
    char text[4096];
    control_->sequence(text, sizeof text);
    return text;
  }

  void Answer(FakeOperation operation, int status, const char* text, FakeBehaviour behaviour = kFakeCopy) const
  {
    const FakeAnswer answer{status, text, nullptr, '\0', behaviour};
    control_->setAnswer(operation, &answer);
  }

 private:
  void* handle_;
  const FakeControl* control_ = nullptr;
};

class OpenDatabases : public testing::Test
{
 protected:
  void SetUp() override
  {
    ExpireArfPaths();
    sandbox_.Configure("ARF/AU/one=/one\nARF/AU/uno=/one\nARF/AU/two=/two\nARF/INT/x=/x\n");
  }
  void TearDown() override
  {
    CloseArfDb(nullptr, true, true);
    ExpireArfPaths();
  }

  /** Opens and returns the database; null on failure, with the status and the text. */
  IArfDb* Open(const char* name, int mode = 0)
  {
    ArfInfo info;
    status_ = OpenArfDb(name, mode, info, errText_, sizeof errText_);
    return info.db;
  }

  test_support::ConfigSandbox sandbox_;
  Fake au_{"libqxarfau.so"};
  int status_ = 0;
  char errText_[kLoadErrorSize] = "before";
};

TEST_F(OpenDatabases, ShareOneDatabaseByItsPath)
{
  IArfDb* const first = Open("au.one");
  ASSERT_NE(nullptr, first) << status_;
  EXPECT_STREQ("", errText_);
  EXPECT_EQ(first, Open("au.uno"));
  EXPECT_EQ(first, Open("/one")) << "an open path needs no country";
  EXPECT_EQ(3, *first->RefCount());
  EXPECT_EQ(1, au_->counter(kFakeOpens));
  IArfDb* const second = Open("au.two", 3);
  EXPECT_NE(first, second);
  EXPECT_EQ("/one;/two", GetOpenArfPaths());
  EXPECT_EQ(3, second->GetOpenMode());

  IncreaseOpenArfDbRefCount(first);
  EXPECT_EQ(4, *first->RefCount());
  for (int left = 3; left > 0; --left) {
    EXPECT_EQ(0, CloseArfDb(first, false, false));
    EXPECT_EQ(left, *first->RefCount());
  }
  au_->clearCalls();
  EXPECT_EQ(0, CloseArfDb(first, false, false));
  EXPECT_NE(std::string::npos, au_.Sequence().find("DbClose DbRelease")) << au_.Sequence();
  EXPECT_EQ("/two", GetOpenArfPaths());
}

TEST_F(OpenDatabases, ReuseTheEntryOfAClosedDatabase)
{
  IArfDb* const first = Open("au.one");
  Open("au.two");
  CloseArfDb(first, false, false);
  Open("int.x");
  EXPECT_EQ("/x;/two", GetOpenArfPaths());
}

TEST_F(OpenDatabases, CloseAtOnceWithForceWhateverTheCount)
{
  IArfDb* const db = Open("au.one");
  Open("au.one");
  au_->clearCalls();
  EXPECT_EQ(0, CloseArfDb(db, true, false));
  const std::string sequence = au_.Sequence();
  EXPECT_EQ(std::string::npos, sequence.find("DbRefCount")) << "the count is not lowered first: " << sequence;
  EXPECT_NE(std::string::npos, sequence.find("DbClose DbRelease")) << sequence;
  EXPECT_EQ("", GetOpenArfPaths());
}

TEST_F(OpenDatabases, IgnoreNullAndUnknownDatabases)
{
  IArfDb* const db = Open("au.one");
  EXPECT_EQ(0, CloseArfDb(nullptr, false, false));
  EXPECT_EQ(0, CloseArfDb(nullptr, true, false));
  int elsewhere = 0;
  EXPECT_EQ(0, CloseArfDb(reinterpret_cast<IArfDb*>(&elsewhere), true, false));
  EXPECT_EQ(1, *db->RefCount());
  EXPECT_EQ("/one", GetOpenArfPaths());
}

TEST_F(OpenDatabases, CloseAllGoesOnWhenAPluginThrows)
{
  Open("au.one");
  Open("au.two");
  au_.Answer(kFakeDbClose, 0, "", kFakeThrowError);
  EXPECT_EQ(0, CloseArfDb(nullptr, true, true));
  EXPECT_EQ("", GetOpenArfPaths());
  EXPECT_EQ(0, au_->counter(kFakeLiveDbs));
}

TEST_F(OpenDatabases, FreeTheLockWhenAPluginThrows)
{
  au_.Answer(kFakeDbOpen, 0, "", kFakeThrowError);
  EXPECT_ANY_THROW(Open("au.one"));
  EXPECT_EQ(0, au_->counter(kFakeLiveDbs)) << "the database was not released";
  au_->clearAnswer(kFakeDbOpen);
  IArfDb* const db = Open("au.one");
  ASSERT_NE(nullptr, db);
  au_.Answer(kFakeDbClose, 0, "", kFakeThrowError);
  EXPECT_ANY_THROW(CloseArfDb(db, false, false));
  au_->clearAnswer(kFakeDbClose);
  EXPECT_EQ(0, au_->counter(kFakeLiveDbs));
  EXPECT_EQ("", GetOpenArfPaths());
}

TEST_F(OpenDatabases, GiveTheLoadersWordsOnlyToBuffersThatHoldThem)
{
  ArfInfo info;
  char text[255] = "before";
  EXPECT_EQ(PAF_ERR_LIBRARY_NOT_LOADED, OpenArfDb("DLL:qx_no_such", 0, info, text, 254));
  EXPECT_STREQ("", text);
  EXPECT_EQ(PAF_ERR_LIBRARY_NOT_LOADED, OpenArfDb("DLL:qx_no_such", 0, info, text, 255));
  EXPECT_NE(std::string::npos, std::string(text).find(". libqx_no_such.so"));
  EXPECT_EQ(PAF_ERR_LIBRARY_NOT_LOADED, OpenArfDb("DLL:qx_no_such", 0, info, nullptr, 0));
  EXPECT_EQ(nullptr, info.db);
}

/** The global database, which the registry keeps apart. */
class GlobalDatabase : public OpenDatabases
{
 protected:
  int OpenGlobal(int mode = 0) { return OpenGlobalPafDb(mode, global_, errText_, sizeof errText_); }

  void Configure(const std::string& pafDir) const { sandbox_.Configure("OpenPaf=Map\nPafDir=" + pafDir + "\n"); }

  std::string DirectoryOf(const std::string& databaseName) const
  {
    sandbox_.Dir().Write("db/PAF.ver", "DATABASENAME=" + databaseName + "\n");
    return sandbox_.Dir().Path("db");
  }

  ArfInfo global_;
};

TEST_F(GlobalDatabase, IsOpenedOnceAndCounted)
{
  Configure(DirectoryOf("AU"));
  ASSERT_EQ(0, OpenGlobal()) << errText_;
  ASSERT_NE(nullptr, global_.db);
  EXPECT_NE(nullptr, global_.functions.getSearcher);
  EXPECT_EQ(1, *global_.db->RefCount());
  EXPECT_EQ(3, global_.db->GetOpenMode()) << "the configured mode";
  EXPECT_EQ(sandbox_.Dir().Path("db"), global_.db->GetPath());
  EXPECT_EQ("", GetOpenArfPaths()) << "it is not in the list of the others";
  Configure("/elsewhere");
  EXPECT_EQ(0, OpenGlobal(2));
  EXPECT_EQ(2, *global_.db->RefCount());
  EXPECT_EQ(1, au_->counter(kFakeOpens));
  CloseGlobalPafDb(global_.db);
  EXPECT_NE(nullptr, global_.db);
  CloseGlobalPafDb(global_.db);
  EXPECT_EQ(nullptr, global_.db);
  EXPECT_EQ(0, au_->counter(kFakeLiveDbs));
  CloseGlobalPafDb(global_.db);
}

TEST_F(GlobalDatabase, MustBeAustralian)
{
  Configure(DirectoryOf("NZ"));
  EXPECT_EQ(PAF_ERR_DEFAULT_NOT_AU, OpenGlobal());
  ExpireArfPaths();
  Configure("DLL:FakeOne;/path");
  EXPECT_EQ(PAF_ERR_DEFAULT_NOT_AU, OpenGlobal());
  EXPECT_EQ(nullptr, global_.db);
}

TEST_F(GlobalDatabase, TellsWhyItDoesNotOpen)
{
  EXPECT_EQ(PAF_ERR_NOT_CONFIGURED, OpenGlobal());
  EXPECT_STREQ("", errText_);
  Configure("/no/such/directory");
  EXPECT_EQ(PAF_ERR_OPEN_FILE, OpenGlobal());
  EXPECT_STREQ("/no/such/directory/PAF.ver", errText_);
  ExpireArfPaths();
  Configure(DirectoryOf("AU"));
  au_.Answer(kFakeDbOpen, 66, "broken");
  EXPECT_EQ(66, OpenGlobal());
  EXPECT_STREQ("broken", errText_);
  EXPECT_EQ(nullptr, global_.db);
  EXPECT_EQ(0, au_->counter(kFakeLiveDbs));
  au_->clearAnswer(kFakeDbOpen);
  au_.Answer(kFakeGetDb, 0, "", kFakeAnswerNull);
  EXPECT_EQ(PAF_ERR_PLUGIN_MEMORY, OpenGlobal());
}

TEST_F(OpenDatabases, PassPropertyRequestsToTheAustralianPlugin)
{
  char out[64];
  au_.Answer(kFakeGetOtherProperties, 0, "the answer");
  EXPECT_EQ(0, GetPropertyFromDll("Barcode:1", out, sizeof out));
  EXPECT_STREQ("the answer", out);
  FakeCall call;
  ASSERT_EQ(1, au_->getCall(kFakeGetOtherProperties, 0, &call));
  EXPECT_STREQ("Barcode:1", call.arguments[0].bytes);
  au_.Answer(kFakeGetOtherProperties, 6415, "");
  EXPECT_EQ(6415, GetPropertyFromDll("Barcode:1", out, sizeof out));
}

TEST_F(OpenDatabases, PassPropertyRequestsToANamedPluginLoadedForTheCall)
{
  char out[64] = "";
  EXPECT_EQ(PAF_ERR_LIBRARY_NOT_LOADED, GetPropertyFromDLL("qx_no_such", "PafLibVersion", out, sizeof out));
  EXPECT_EQ(nullptr, dlopen("libqxarfuk.so", RTLD_LAZY | RTLD_NOLOAD));
  EXPECT_EQ(0, GetPropertyFromDLL("qxarfuk", "PafLibVersion", out, sizeof out));
  EXPECT_EQ(nullptr, dlopen("libqxarfuk.so", RTLD_LAZY | RTLD_NOLOAD)) << "still loaded";
  const Fake nz("libqxarfnz.so");
  nz.Answer(kFakeGetOtherProperties, 5, "x");
  EXPECT_EQ(5, GetPropertyFromDLL("qxarfnz", "PafLibVersion", out, sizeof out));
}

TEST_F(OpenDatabases, UnloadPluginsThatSaySo)
{
  Open("int.x");
  ArfInfo info;
  EXPECT_EQ(0, OpenArfDb("DLL:FakeTwo;/p", 0, info, errText_, sizeof errText_)) << errText_;
  UnloadPlugins_();
  void* const international = dlopen("libqxarfint.so", RTLD_LAZY | RTLD_NOLOAD);
  ASSERT_NE(nullptr, international) << "unloaded while a database was open";
  dlclose(international);
  CloseArfDb(nullptr, true, true);
  UnloadPlugins_();
  EXPECT_EQ(nullptr, dlopen("libqxarfint.so", RTLD_LAZY | RTLD_NOLOAD));
  IArfDb* const again = Open("int.x");
  EXPECT_NE(nullptr, again) << "a plug-in is loaded again when it is needed";
}

}  // namespace
