#include "server/trust.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pafd {
namespace {

Arguments With(const std::string& first, const std::string& second = "")
{
  Arguments arguments;
  arguments.texts = {first, second};
  return arguments;
}

const std::vector<std::string> kNames = {"", "AU", "AU.Main", "Main", "au.x.y", "..", "a b", "DLL", "\xC3\xA9"};
const std::vector<std::string> kPlaces = {"/srv", "au./srv", "./a",   "a/",       "a\\b", "\\a",
                                          "C:a",  "au.C:a",  "DLL:x", "dll:x;/y", "a:",   "nz./"};

TEST(Trust, NamesAreWhatOnlyTheConfigurationKnows)
{
  for (const std::string& name : kNames) {
    EXPECT_TRUE(IsConfiguredName(name)) << name;
    EXPECT_EQ(RefuseToOpen(With(name)), 0) << name;
  }
  for (const std::string& place : kPlaces) {
    EXPECT_FALSE(IsConfiguredName(place)) << place;
    EXPECT_EQ(RefuseToOpen(With(place)), 6499) << place;
  }
}

TEST(Trust, PropertiesThatNameDatabases)
{
  for (const char* prefix : {"ArfVersion:", "ArfStatus:", "arfversion:", "ARFSTATUS:"}) {
    for (const std::string& name : kNames) {
      EXPECT_EQ(RefuseToGet(With(prefix + name)), 0) << name;
    }
    for (const std::string& place : kPlaces) {
      EXPECT_EQ(RefuseToGet(With(prefix + place)), 6499) << place;
    }
  }
  for (const char* name : {"", "Arf", "ArfVersion", "BSP:2000", "Barcode:1/2", "Other:/x"}) {
    EXPECT_EQ(RefuseToGet(With(name)), 0) << name;
  }
}

TEST(Trust, PropertiesThatChangeThePlaceOfWork)
{
  for (const char* name : {"UseSockets", "TcpHost", "TcpPort", "usesockets", "TCPHOST", "tCpPoRt"}) {
    EXPECT_EQ(RefuseToSet(With(name, "True")), 6408) << name;
    EXPECT_EQ(RefuseToSet(With(name, "")), 6408) << name;
  }
  for (const char* name : {"OpenARF", "openarf"}) {
    for (const std::string& known : kNames) {
      EXPECT_EQ(RefuseToSet(With(name, known)), 0) << known;
    }
    for (const std::string& place : kPlaces) {
      EXPECT_EQ(RefuseToSet(With(name, place)), 6499) << place;
    }
  }
  for (const char* name : {"", "Delimiter", "UseSockets ", "UseSocket", "TcpHosts"}) {
    EXPECT_EQ(RefuseToSet(With(name, "/x:")), 0) << name;
  }
}

}  // namespace
}  // namespace pafd
