// The dynamic loader as the library offers it.
#include "qxpaf/platform/dynamic_library.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "blackbox/support/fake.h"
#include "blackbox/support/guarded_buffer.h"

namespace blackbox {
namespace {

TEST(DynamicLibrary, LoadsResolvesAndUnloads)
{
  void* handle = QXDLL::Load("libqxarfnz.so");
  ASSERT_NE(handle, nullptr);
  EXPECT_TRUE(IsLibraryLoaded("libqxarfnz.so"));
  EXPECT_EQ(QXDLL::GetProc(handle, "GetDb"), dlsym(handle, "GetDb"));
  EXPECT_NE(QXDLL::GetProc(handle, "GetDb"), nullptr);
  EXPECT_EQ(QXDLL::GetProc(handle, "NoSuchSymbol"), nullptr);
  EXPECT_TRUE(QXDLL::Unload(handle));
  EXPECT_FALSE(IsLibraryLoaded("libqxarfnz.so"));
}

TEST(DynamicLibrary, FixesTheNameAndKeepsItsCase)
{
  void* handle = QXDLL::FixNameAndLoad("qxarfuk");
  ASSERT_NE(handle, nullptr);
  EXPECT_TRUE(IsLibraryLoaded("libqxarfuk.so"));
  EXPECT_TRUE(QXDLL::Unload(handle));
  EXPECT_EQ(QXDLL::FixNameAndLoad("QXArfUk"), nullptr);
  EXPECT_EQ(QXDLL::FixNameAndLoad(""), nullptr);
}

TEST(DynamicLibrary, ALongNameIsNotTried)
{
  char text[512];
  QXDLL::GetError(text, sizeof text);
  for (size_t length : {250u, 251u, 5000u}) {
    EXPECT_EQ(QXDLL::FixNameAndLoad(std::string(length, 'n').c_str()), nullptr);
    QXDLL::GetError(text, sizeof text);
    EXPECT_STREQ(text, "") << "the loader was not asked";
  }
  EXPECT_EQ(QXDLL::FixNameAndLoad(std::string(249, 'n').c_str()), nullptr);
  QXDLL::GetError(text, sizeof text);
  EXPECT_NE(std::string(text).find("lib" + std::string(249, 'n') + ".so"), std::string::npos);
}

TEST(DynamicLibrary, AnErrorIsTakenOnceAndCut)
{
  EXPECT_EQ(dlopen("libnone.so", RTLD_LAZY), nullptr);
  const std::string message = dlerror();
  for (size_t size : {size_t{1}, size_t{2}, message.size(), message.size() + 1, message.size() + 50}) {
    EXPECT_EQ(QXDLL::Load("libnone.so"), nullptr);
    GuardedBuffer buffer(size);
    QXDLL::GetError(buffer.data(), size);
    EXPECT_TRUE(buffer.IsTerminated());
    EXPECT_EQ(buffer.Text(), message.substr(0, size - 1));
    QXDLL::GetError(buffer.data(), size);
    EXPECT_EQ(buffer.Text(), "");
  }
}

TEST(DynamicLibrary, AnErrorBufferOfSizeZeroIsLeftAlone)
{
  EXPECT_EQ(QXDLL::Load("libnone.so"), nullptr);
  GuardedBuffer buffer(4);
  QXDLL::GetError(buffer.data(), 0);
  QXDLL::GetError(nullptr, 0);
  EXPECT_TRUE(buffer.IsUntouched());
  char text[512] = "";
  QXDLL::GetError(text, sizeof text);
  EXPECT_NE(std::string(text), "") << "and consumes nothing";
}

}  // namespace
}  // namespace blackbox
