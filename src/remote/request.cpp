#include "remote/request.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "platform/bounded.h"

namespace qxpaf {
namespace {

constexpr std::size_t kLongestInteger = std::numeric_limits<long>::digits10 + 2;

std::string_view ViewOf(const char* text)
{
  return text != nullptr ? text : "";
}

/** Copies the number that a text begins with, white space before it included. @return the place behind it */
const char* TakeNumber(const char* text, char (&number)[TwoNumbers::kLongestNumber + 1])
{
  char* end = nullptr;
  std::strtod(text, &end);
  CopyCut(number, sizeof number, {text, static_cast<std::size_t>(end - text)});
  return end;
}

}  // namespace

RequestWriter::RequestWriter(char* line, std::size_t capacity) : position_(line), capacity_(capacity)
{
  *position_ = '\0';
}

void RequestWriter::Append(std::string_view text)
{
  CopyCut(position_, capacity_, text);
  const std::size_t written = std::min(text.size(), capacity_ - 1);
  position_ += written;
  capacity_ -= written;
}

void RequestWriter::AppendField(const char* text)
{
  Append("\t");
  Append(ViewOf(text));
}

void RequestWriter::AppendField(long number)
{
  char digits[kLongestInteger];
  const char* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  Append("\t");
  Append({digits, static_cast<std::size_t>(end - digits)});
}

std::size_t WholeRequest::FieldSize(const char* text)
{
  return 1 + ViewOf(text).size();
}

std::size_t WholeRequest::FieldSize(long /*number*/)
{
  return 1 + kLongestInteger;
}

TabFreeText::TabFreeText(const char* text) : text_(text), copy_{}
{
  if (text == nullptr || std::strchr(text, '\t') == nullptr) return;
  CopyCut(copy_, sizeof copy_, text);
  std::replace(copy_, copy_ + std::strlen(copy_), '\t', ' ');
  text_ = copy_;
}

TwoNumbers::TwoNumbers(const char* text)
{
  if (text == nullptr) return;
  const char* const separator = TakeNumber(text, first_);
  if (separator != text && *separator != '\0') TakeNumber(separator + 1, second_);
}

}  // namespace qxpaf
