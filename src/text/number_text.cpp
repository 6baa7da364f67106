// Numbers to text. The standard functions are defined by the same printf formats: "%d", "%lu", ..., "%f" and "%Lf".
#include "qxpaf/text/encoding.h"

namespace qxpaf {
namespace {

// Wide results come out of a buffer of 256 elements, terminator included, as far as callers are concerned.
constexpr std::size_t kLongestWideNumber = 255;

std::wstring CutWide(std::wstring text)
{
  if (text.size() > kLongestWideNumber) text.resize(kLongestWideNumber);
  return text;
}

}  // namespace
}  // namespace qxpaf

std::string QX_to_string(int value)
{
  return std::to_string(value);
}

std::string QX_to_string(unsigned int value)
{
  return std::to_string(value);
}

std::string QX_to_string(long value)
{
  return std::to_string(value);
}

std::string QX_to_string(unsigned long value)
{
  return std::to_string(value);
}

std::string QX_to_string(long long value)
{
  return std::to_string(value);
}

std::string QX_to_string(unsigned long long value)
{
  return std::to_string(value);
}

std::string QX_to_string(float value)
{
  return std::to_string(static_cast<double>(value));
}

std::string QX_to_string(double value)
{
  return std::to_string(value);
}

std::string QX_to_string(long double value)
{
  return std::to_string(value);
}

std::wstring QX_to_wstring(int value)
{
  return std::to_wstring(value);
}

std::wstring QX_to_wstring(unsigned int value)
{
  return std::to_wstring(value);
}

std::wstring QX_to_wstring(long value)
{
  return std::to_wstring(value);
}

std::wstring QX_to_wstring(unsigned long value)
{
  return std::to_wstring(value);
}

std::wstring QX_to_wstring(long long value)
{
  return std::to_wstring(value);
}

std::wstring QX_to_wstring(unsigned long long value)
{
  return std::to_wstring(value);
}

std::wstring QX_to_wstring(float value)
{
  return QX_to_wstring(static_cast<double>(value));
}

std::wstring QX_to_wstring(double value)
{
  return qxpaf::CutWide(std::to_wstring(value));
}

std::wstring QX_to_wstring(long double value)
{
  return qxpaf::CutWide(std::to_wstring(value));
}
