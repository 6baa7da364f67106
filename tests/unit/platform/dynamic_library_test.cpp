#include "qxpaf/platform/dynamic_library.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

namespace {

constexpr const char* kMathLibrary = "libm.so.6";

TEST(DynamicLibrary, LoadsResolvesAndUnloads)
{
  void* const handle = QXDLL::Load(kMathLibrary);
  ASSERT_NE(nullptr, handle);
  const auto cosine = reinterpret_cast<double (*)(double)>(QXDLL::GetProc(handle, "cos"));
  ASSERT_NE(nullptr, cosine);
  EXPECT_DOUBLE_EQ(1.0, cosine(0.0));
  EXPECT_EQ(nullptr, QXDLL::GetProc(handle, "no_such_function_in_libm"));
  EXPECT_TRUE(QXDLL::Unload(handle));
}

TEST(DynamicLibrary, TellsWhyLoadingFailed)
{
  EXPECT_EQ(nullptr, QXDLL::Load("libqx_no_such_library.so"));
  char text[256];
  QXDLL::GetError(text, sizeof text);
  EXPECT_NE(nullptr, std::strstr(text, "libqx_no_such_library.so"));
  QXDLL::GetError(text, sizeof text);
  EXPECT_STREQ("", text) << "the message was taken before";
}

TEST(DynamicLibrary, CutsTheMessageToTheBuffer)
{
  for (const std::size_t size : {1U, 2U, 5U}) {
    QXDLL::Load("libqx_no_such_library.so");
    const auto text = std::make_unique<char[]>(size);
    std::memset(text.get(), '#', size);
    QXDLL::GetError(text.get(), size);
    EXPECT_EQ(std::string("libqx_no").substr(0, size - 1), text.get());
  }
}

TEST(DynamicLibrary, TouchesNothingWithSizeZero)
{
  QXDLL::Load("libqx_no_such_library.so");
  char byte = '#';
  QXDLL::GetError(&byte, 0);
  EXPECT_EQ('#', byte);
}

TEST(DynamicLibrary, BuildsTheFileNameKeepingCase)
{
  EXPECT_EQ(nullptr, QXDLL::FixNameAndLoad("QxNoSuch"));
  char text[256];
  QXDLL::GetError(text, sizeof text);
  EXPECT_EQ(0, std::strncmp("libQxNoSuch.so", text, 14)) << text;
}

TEST(DynamicLibrary, DoesNotTryNamesThatAreTooLong)
{
  char text[256];
  QXDLL::GetError(text, sizeof text);
  EXPECT_EQ(nullptr, QXDLL::FixNameAndLoad(std::string(250, 'x').c_str()));
  QXDLL::GetError(text, sizeof text);
  EXPECT_STREQ("", text) << "the loader was asked";
  EXPECT_EQ(nullptr, QXDLL::FixNameAndLoad(std::string(249, 'x').c_str()));
  QXDLL::GetError(text, sizeof text);
  EXPECT_STRNE("", text) << "the loader was not asked";
}

}  // namespace
