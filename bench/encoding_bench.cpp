// Encoding conversions beside the plain transcriptions of the tests and iconv.
#include <iconv.h>

#include <stdexcept>
#include <string>

#include "measure.h"
#include "qxpaf/text/encoding.h"
#include "reference/encoding_reference.h"

namespace {

using bench::Measure;

class Iconv
{
 public:
  Iconv(const char* to, const char* from) : handle_(iconv_open(to, from))
  {
    if (handle_ == reinterpret_cast<iconv_t>(-1)) throw std::runtime_error("iconv_open");
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;
  ~Iconv() { iconv_close(handle_); }

  // Into a string that has room for any result and is cut to length: the usual
  // way to call it.
  template <class Out, class Text>
  Out Convert(const Text& text, std::size_t capacity)
  {
    Out out(capacity, 0);
    char* from = const_cast<char*>(reinterpret_cast<const char*>(text.data()));
    std::size_t left = text.size() * sizeof(text[0]);
    char* to = reinterpret_cast<char*>(out.data());
    std::size_t room = capacity * sizeof(out[0]);
    if (iconv(handle_, &from, &left, &to, &room) == static_cast<std::size_t>(-1)) throw std::runtime_error("iconv");
    out.resize(capacity - room / sizeof(out[0]));
    return out;
  }

 private:
  iconv_t handle_;
};

std::wstring IconvUtf8ToWide(const std::string& s)
{
  static Iconv converter("WCHAR_T", "UTF-8");
  return converter.Convert<std::wstring>(s, s.size());
}

std::string IconvWideToUtf8(const std::wstring& s)
{
  static Iconv converter("UTF-8", "WCHAR_T");
  return converter.Convert<std::string>(s, 4 * s.size());
}

std::string IconvAnsiToUtf8(const std::string& s)
{
  static Iconv converter("UTF-8", "WINDOWS-1252");
  return converter.Convert<std::string>(s, 3 * s.size());
}

std::wstring IconvAnsiToWide(const std::string& s)
{
  static Iconv converter("WCHAR_T", "WINDOWS-1252");
  return converter.Convert<std::wstring>(s, s.size());
}

const bench::Inputs<std::wstring>& WideTexts()
{
  static const auto inputs =
      bench::Converted(bench::AddressTexts(), [](const std::string& utf8) { return Utf8ToWide(utf8); });
  return inputs;
}

// Text that Windows-1252 has bytes for; other characters become "?".
const bench::Inputs<std::string>& AnsiTexts()
{
  static const auto inputs = bench::Converted(
      bench::AddressTexts(), [](const std::string& utf8) { return WideToAnsi(Utf8ToWide(utf8), '?'); },
      [](const std::string& name) {
        return name.starts_with("ASCII") || name.starts_with("Latin") || name.starts_with("German");
      });
  return inputs;
}

const bench::Inputs<std::string>& AnsiSpecials()
{
  static const auto inputs = bench::Doubling("specials", "\x80\x93\xE9\x99");
  return inputs;
}

const bench::Inputs<std::wstring>& WideSpecials()
{
  static const auto inputs = bench::Converted(AnsiSpecials(), [](const std::string& s) { return AnsiToWide(s); });
  return inputs;
}

void RegisterUtf8ToWide()
{
  const auto& texts = bench::AddressTexts();
  Measure("Utf8ToWide", texts, [](const std::string& s) { return Utf8ToWide(s); });
  Measure("Utf8ToWide", texts, "plain",
          [](const std::string& s) { return reference::ReadWide(s, s.size(), true).second; });
  Measure("Utf8ToWide", texts, "iconv", IconvUtf8ToWide);
  Measure("ReadUtf8String", texts, [](const std::string& s) {
    std::wstring out;
    ReadUtf8String(out, s.c_str());
    return out;
  });
  Measure("ReadUtf8String", texts, "plain",
          [](const std::string& s) { return reference::ReadWide(s, s.size(), false).second; });
}

void RegisterFromWide()
{
  Measure("WideToUtf8", WideTexts(), [](const std::wstring& s) { return WideToUtf8(s); });
  Measure("WideToUtf8", WideTexts(), "plain", reference::WideToUtf8);
  Measure("WideToUtf8", WideTexts(), "iconv", IconvWideToUtf8);
  for (const auto* inputs : {&WideTexts(), &WideSpecials()}) {
    Measure("WideToAnsi", *inputs, [](const std::wstring& s) { return WideToAnsi(s, '?'); });
    Measure("WideToAnsi", *inputs, "plain", [](const std::wstring& s) { return reference::WideToAnsi(s, '?'); });
  }
}

void RegisterFromAnsi()
{
  for (const auto* inputs : {&AnsiTexts(), &AnsiSpecials()}) {
    Measure("Windows1252ToUtf8", *inputs, [](const std::string& s) { return Windows1252ToUtf8(s); });
    Measure("Windows1252ToUtf8", *inputs, "plain", reference::Windows1252ToUtf8);
    Measure("Windows1252ToUtf8", *inputs, "iconv", IconvAnsiToUtf8);
    Measure("AnsiToWide", *inputs, [](const std::string& s) { return AnsiToWide(s); });
    Measure("AnsiToWide", *inputs, "plain", reference::AnsiToWide);
    Measure("AnsiToWide", *inputs, "iconv", IconvAnsiToWide);
  }
}

void RegisterScans()
{
  const auto& texts = bench::AddressTexts();
  Measure("Utf8Strlen", texts, [](const std::string& s) { return Utf8Strlen(s.c_str()); });
  Measure("Utf8Strlen", texts, "plain", reference::Utf8Strlen);
  Measure("IsStringUtf8", texts, [](const std::string& s) { return IsStringUtf8(s, 10); });
  Measure("IsStringUtf8", texts, "plain", [](const std::string& s) { return reference::IsStringUtf8(s, 10); });
  Measure("IsBufferUtf8", texts, [](const std::string& s) { return IsBufferUtf8(s.data(), s.size(), 10); });
  Measure("IsBufferUtf8", texts, "plain", [](const std::string& s) { return reference::IsBufferUtf8(s, 10); });
}

}  // namespace

int main(int argc, char** argv)
{
  RegisterUtf8ToWide();
  RegisterFromWide();
  RegisterFromAnsi();
  RegisterScans();
  return bench::Run(argc, argv);
}
