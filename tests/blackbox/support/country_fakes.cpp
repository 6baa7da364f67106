#include "blackbox/support/country_fakes.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace blackbox {

CountryFakes::CountryFakes()
{
  for (const char* name : {"libqxarfau.so", "libqxarfnz.so", "libqxarfus.so", "libqxarfuk.so", "libqxarfint.so",
                           "libfakeone.so", "libfaketwo.so"})
    fakes_.push_back(std::make_unique<Fake>(name));
}

Fake& CountryFakes::operator[](const std::string& libraryName)
{
  for (const auto& fake : fakes_) {
    if ((*fake)->libraryName == libraryName) return *fake;
  }
  throw std::out_of_range(libraryName);
}

Opened CountryFakes::TheOpen()
{
  Opened opened;
  for (const auto& fake : fakes_) {
    for (const Call& call : fake->Calls(kFakeDbOpen)) {
      EXPECT_EQ(opened.library, "") << "opened twice";
      opened = {(*fake)->libraryName, call.arguments.at(0).text, call.arguments.at(1).raw.number};
    }
  }
  return opened;
}

void CountryFakes::ClearCalls()
{
  for (const auto& fake : fakes_) (*fake)->clearCalls();
}

long CountryFakes::Counter(FakeCounter counter) const
{
  long sum = 0;
  for (const auto& fake : fakes_) sum += (*fake)->counter(counter);
  return sum;
}

}  // namespace blackbox
