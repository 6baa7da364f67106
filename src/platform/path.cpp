#include "qxpaf/platform/path.h"

#include <cstring>

#include "qxpaf/text/encoding.h"

namespace {

constexpr char kSeparator = '/';

/** Where the extension starts: the position of the last "." if no separator follows it, otherwise npos. */
std::size_t ExtensionStart(const std::string& text)
{
  const std::size_t last = text.find_last_of("./");
  return last != std::string::npos && text[last] == '.' ? last : std::string::npos;
}

}  // namespace

QX_Path::QX_Path() = default;
QX_Path::QX_Path(const QX_Path& other) = default;
QX_Path::QX_Path(const std::string& text) : text_(text) {}
QX_Path::QX_Path(const std::wstring& text) : text_(ConvertFromOtherType(text)) {}
QX_Path::QX_Path(const char* text) : text_(text != nullptr ? text : "") {}
QX_Path::QX_Path(const wchar_t* text) : text_(text != nullptr ? WideToUtf8(text) : std::string()) {}
QX_Path::~QX_Path() = default;

QX_Path& QX_Path::operator=(const QX_Path& other) = default;

QX_Path& QX_Path::operator=(const std::string& text)
{
  text_ = text;
  return *this;
}

QX_Path& QX_Path::operator=(const std::wstring& text)
{
  text_ = ConvertFromOtherType(text);
  return *this;
}

QX_Path& QX_Path::operator=(const char* text)
{
  text_ = text != nullptr ? text : "";
  return *this;
}

QX_Path& QX_Path::operator=(const wchar_t* text)
{
  text_ = text != nullptr ? WideToUtf8(text) : std::string();
  return *this;
}

QX_Path& QX_Path::operator+=(const QX_Path& other)
{
  return *this += other.text_;
}

QX_Path& QX_Path::operator+=(const std::string& text)
{
  text_ += text;
  return *this;
}

QX_Path& QX_Path::operator+=(const std::wstring& text)
{
  return *this += ConvertFromOtherType(text);
}

QX_Path& QX_Path::operator+=(const char* text)
{
  text_ += text;
  return *this;
}

QX_Path& QX_Path::operator+=(const wchar_t* text)
{
  return *this += WideToUtf8(text);
}

QX_Path& QX_Path::AddTrailingPathDivider()
{
  text_ = IncludeTrailingPathDelimiter(text_);
  return *this;
}

void QX_Path::Clear()
{
  text_.clear();
}

const std::string& QX_Path::Native() const
{
  return text_;
}

const char* QX_Path::c_str() const
{
  return text_.c_str();
}

std::string QX_Path::String() const
{
  return text_;
}

std::wstring QX_Path::WString() const
{
  return ConvertToOtherType(text_);
}

bool QX_Path::Empty() const
{
  return text_.empty();
}

int QX_Path::Compare(const QX_Path& other) const
{
  return text_.compare(other.text_);
}

bool QX_Path::operator==(const QX_Path& other) const
{
  return Compare(other) == 0;
}

bool QX_Path::operator!=(const QX_Path& other) const
{
  return Compare(other) != 0;
}

QX_Path QX_Path::ExtractFilePath() const
{
  return text_.substr(0, text_.rfind(kSeparator) + 1);
}

QX_Path QX_Path::ExtractFileName() const
{
  return text_.substr(text_.rfind(kSeparator) + 1);
}

QX_Path QX_Path::ExtractExtension() const
{
  const std::size_t start = ExtensionStart(text_);
  return start != std::string::npos ? text_.substr(start) : std::string();
}

QX_Path QX_Path::RemoveExtension() const
{
  return text_.substr(0, ExtensionStart(text_));
}

bool QX_Path::IsAbsolutePath() const
{
  return !text_.empty() && text_.front() == kSeparator;
}

std::string QX_Path::ConvertFromOtherType(const std::wstring& text)
{
  return WideToUtf8(text);
}

std::wstring QX_Path::ConvertToOtherType(const std::string& text)
{
  std::wstring wide;
  return ReadUtf8String(wide, text.c_str()) ? wide : AnsiToWide(text);
}

QX_Path operator+(const QX_Path& a, const QX_Path& b)
{
  return a.Native() + b.Native();
}

char* IncludeTrailingPathDelimiter(char* text)
{
  const std::size_t length = std::strlen(text);
  if (length == 0 || text[length - 1] == '\\' || text[length - 1] == kSeparator) return text;
  text[length] = kSeparator;
  text[length + 1] = '\0';
  return text;
}

template <class S>
S IncludeTrailingPathDelimiter(const S& text)
{
  return text.empty() || text.back() == kSeparator ? text : text + kSeparator;
}

template QXPAF_API std::string IncludeTrailingPathDelimiter<std::string>(const std::string& text);
