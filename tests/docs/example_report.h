// What a program made of a page's examples needs: values shown as the page writes them, and a report for the checker.
#ifndef QXPAF_TESTS_DOCS_EXAMPLE_REPORT_H
#define QXPAF_TESTS_DOCS_EXAMPLE_REPORT_H

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <string>
#include <string_view>
#include <type_traits>

namespace examples {

/** A number with the decimals that the page shows; with none shown, with all that it has. */
constexpr int kAllDecimals = -1;

template <class... Values>
std::string Format(const char* format, Values... values)
{
  char text[512];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

inline bool IsUtf8(std::string_view text)
{
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || i + length > text.size()) return false;
    for (std::size_t k = 1; k < length; ++k)
      if ((text[i + k] & 0xC0) != 0x80) return false;
    i += length;
  }
  return true;
}

/** One character inside quotes. Escapes have one width, so that different texts never look alike. */
inline std::string Escaped(char c, bool asUtf8)
{
  if (c == '"' || c == '\'' || c == '\\') return std::string("\\") + c;
  const auto byte = static_cast<unsigned char>(c);
  if ((byte >= 0x20 && byte < 0x7F) || (byte >= 0x80 && asUtf8)) return std::string(1, c);
  return Format("\\x%02X", static_cast<unsigned>(byte));
}

inline std::string Escaped(wchar_t c)
{
  const auto code = static_cast<unsigned>(c);
  if (code < 0x7F) return Escaped(static_cast<char>(c), false);
  return Format("\\x%08X", code);
}

inline std::string Quoted(std::string_view text)
{
  const bool asUtf8 = IsUtf8(text);
  std::string result = "\"";
  for (const char c : text) result += Escaped(c, asUtf8);
  return result + "\"";
}

inline std::string Quoted(std::wstring_view text)
{
  std::string result = "L\"";
  for (const wchar_t c : text) result += Escaped(c);
  return result + "\"";
}

template <class T>
std::string ShowPointer(T* pointer)
{
  using Element = std::remove_cv_t<T>;
  if (pointer == nullptr) return "nullptr";
  if constexpr (std::is_same_v<Element, char> || std::is_same_v<Element, wchar_t>)
    return Quoted(std::basic_string_view<Element>(pointer));
  else
    return "a pointer that is not null";
}

template <class T>
std::string ShowNumber(T value, int decimals)
{
  if constexpr (std::is_floating_point_v<T>) {
    const auto wide = static_cast<double>(value);
    return decimals == kAllDecimals ? Format("%.17g", wide) : Format("%.*f", decimals, wide);
  } else
    return std::to_string(value);
}

/** A value in the one form in which the results of examples are compared. */
template <class T>
std::string Show(const T& value, int decimals = kAllDecimals)
{
  using Value = std::decay_t<const T&>;
  if constexpr (std::is_same_v<Value, bool>)
    return value ? "true" : "false";
  else if constexpr (std::is_same_v<Value, char>)
    return "'" + Escaped(value, false) + "'";
  else if constexpr (std::is_same_v<Value, wchar_t>)
    return Format("U+%04X", static_cast<unsigned>(value));
  else if constexpr (std::is_null_pointer_v<Value>)
    return "nullptr";
  else if constexpr (std::is_pointer_v<Value>)
    return ShowPointer(static_cast<Value>(value));
  else if constexpr (std::is_enum_v<Value>)
    return ShowNumber(static_cast<std::underlying_type_t<Value>>(value), decimals);
  else if constexpr (std::is_arithmetic_v<Value>)
    return ShowNumber(value, decimals);
  else
    return Quoted(value);
}

/** A text literal of the page, whole: zero bytes inside it count. */
template <class Char, std::size_t size>
std::string Literal(const Char (&text)[size])
{
  return Quoted(std::basic_string_view<Char>(text, size - 1));
}

/** Writes what the examples give, one line each, to a file of its own: the examples may print. */
class Report
{
 public:
  explicit Report(const char* path) : file_(std::fopen(path, "w"))
  {
    if (file_ == nullptr) std::abort();
  }
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;
  ~Report() { std::fclose(file_); }

  void Write(const char* kind, int number, const std::string& text)
  {
    std::fprintf(file_, "%s %d %s\n", kind, number, text.c_str());
    std::fflush(file_);
  }

  void Expect(int number, const std::string& actual, const std::string& expected)
  {
    if (actual == expected)
      Write("right", number, "");
    else
      Write("wrong", number, actual);
  }

  void Run(int line, void (*block)(Report&))
  {
    Write("block", line, "");
    try {
      block(*this);
    } catch (const std::exception& error) {
      Write("thrown", line, error.what());
    }
    Write("done", line, "");
  }

 private:
  std::FILE* file_;
};

}  // namespace examples

#endif
