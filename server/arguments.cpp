#include "arguments.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace pafd {
namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr std::size_t kKeptCapacity = 4096;  // after a request with a long text a connection is small again

bool IsDigit(char c)
{
  return c >= '0' && c <= '9';
}

bool TakesTheRest(Field field)
{
  return field == Field::Lines || field == Field::Record;
}

/** Walks over the fields of a request. */
class Fields
{
 public:
  Fields(std::string_view text, std::size_t expected)
      : text_(text), count_(1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\t')))
  {
    surplus_ = count_ > expected ? count_ - expected : 0;
  }

  std::string_view Next() { return Next(1); }

  /** One field and all that are too many, with the TABs between them. */
  std::string_view NextWithSurplus() { return Next(1 + surplus_); }

  bool HasSurplus() const { return surplus_ > 0; }

 private:
  std::string_view Next(std::size_t fields)
  {
    std::size_t end = 0;
    for (; fields > 0; --fields) {
      end = std::min(text_.find('\t', end), text_.size());
      end += fields > 1 ? 1 : 0;
    }
    const std::string_view field = text_.substr(0, end);
    text_.remove_prefix(std::min(end + 1, text_.size()));
    return field;
  }

  std::string_view text_;
  std::size_t count_;
  std::size_t surplus_ = 0;
};

void SetText(std::string& target, std::string_view field)
{
  if (target.capacity() > kKeptCapacity) {
    std::string().swap(target);  // an assignment would keep the memory
  }
  target = field.substr(0, field.find('\0'));
}

}  // namespace

long ReadNumber(std::string_view text)
{
  text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
  if (text.size() > 1 && text.front() == '+' && IsDigit(text[1])) {
    text.remove_prefix(1);
  }
  long number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec == std::errc::result_out_of_range) {
    return text.front() == '-' ? std::numeric_limits<long>::min() : std::numeric_limits<long>::max();
  }
  return number;
}

int ReadInt(std::string_view text)
{
  return static_cast<int>(
      std::clamp<long>(ReadNumber(text), std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

std::string_view SplitName(std::string_view line, std::string_view& name)
{
  const std::size_t tab = std::min(line.find('\t'), line.size());
  name = line.substr(0, tab);
  return line.substr(std::min(tab + 1, line.size()));
}

bool ReadArguments(std::string_view text, const FieldList& list, Arguments& arguments)
{
  Fields fields(text, list.Count());
  std::size_t numbers = 0;
  std::size_t texts = 0;
  bool isJoined = false;
  for (const Field field : list) {
    if (field == Field::Id) {
      arguments.id = ReadInt(fields.Next());
    } else if (field == Field::Number) {
      arguments.numbers[numbers++] = ReadNumber(fields.Next());
    } else if (TakesTheRest(field)) {
      std::string& lines = arguments.texts[texts++];
      SetText(lines, fields.NextWithSurplus());
      std::replace(lines.begin(), lines.end(), '\t', '\n');
      isJoined = fields.HasSurplus();
    } else {
      SetText(arguments.texts[texts++], fields.Next());
    }
  }
  return isJoined;
}

}  // namespace pafd
