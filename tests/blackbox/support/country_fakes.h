/** All well-behaved fakes at once, to see which of them a name led to. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_COUNTRY_FAKES_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_COUNTRY_FAKES_H

#include <memory>
#include <string>
#include <vector>

#include "blackbox/support/fake.h"

namespace blackbox {

/** One call of Open, and the library that got it; an empty library when there was none. */
struct Opened
{
  std::string library;
  std::string path;
  long long mode = 0;
};

class CountryFakes
{
 public:
  CountryFakes();

  Fake& operator[](const std::string& libraryName);
  /** The only recorded call of Open in any library; a test failure when there were several. */
  Opened TheOpen();
  void ClearCalls();
  /** The sum of a counter over all libraries. */
  long Counter(FakeCounter counter) const;

 private:
  std::vector<std::unique_ptr<Fake>> fakes_;
};

}  // namespace blackbox

#endif
