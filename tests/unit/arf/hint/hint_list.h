/** The hints of a database as texts. */
#ifndef QXPAF_TESTS_UNIT_ARF_HINT_HINT_LIST_H
#define QXPAF_TESTS_UNIT_ARF_HINT_HINT_LIST_H

#include <memory>
#include <string>
#include <vector>

#include "arf/hint/hint_enumeration.h"

namespace arf_test {

struct Shown
{
  std::string text;
  arf::Hint hint;
};

class Hints
{
 public:
  explicit Hints(const arf::Database& data) : data_(data), hints_(std::make_unique<arf::HintEnumeration>(data)) {}

  std::vector<Shown> Of(const std::string& text, const std::string& place = "", std::size_t most = 10)
  {
    hints_->StartHints(text, place, most);
    return Rest();
  }
  std::vector<Shown> AddressesOf(const std::string& text, const std::string& place = "")
  {
    hints_->StartAddresses(text, place);
    return Rest();
  }

 private:
  std::vector<Shown> Rest()
  {
    std::vector<Shown> all;
    for (; hints_->Current(); hints_->Advance()) {
      char buffer[1024];
      arf::BoundedText text(buffer, sizeof buffer);
      arf::AppendHintText(text, data_, *hints_->Current());
      all.push_back({buffer, *hints_->Current()});
    }
    return all;
  }

  const arf::Database& data_;
  std::unique_ptr<arf::HintEnumeration> hints_;
};

}  // namespace arf_test

#endif
