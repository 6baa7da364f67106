/**
 * Paths as values, kept as UTF-8 text.
 *
 * The only separator is "/". A path is never changed behind the caller's back: no "." or ".." is resolved, no doubled
 * separator is removed, no letter changes case, and nothing here looks at the file system. Narrow text is taken as
 * UTF-8 as it stands, without a check. All functions are reentrant; one object is used by one thread at a time.
 * Allocation failure throws std::bad_alloc.
 */
#ifndef QXPAF_PLATFORM_PATH_H
#define QXPAF_PLATFORM_PATH_H

#include <string>

#include "qxpaf/export.h"

/** The text of a path. Its only member is one std::string, on which separately compiled code depends. */
class QXPAF_API QX_Path
{
 public:
  QX_Path();
  QX_Path(const QX_Path& other);
  QX_Path(const std::string& text);
  QX_Path(const std::wstring& text);

  /** Null gives the empty path. */
  QX_Path(const char* text);
  QX_Path(const wchar_t* text);

  ~QX_Path();

  QX_Path& operator=(const QX_Path& other);
  QX_Path& operator=(const std::string& text);
  QX_Path& operator=(const std::wstring& text);

  /** Null empties the path. */
  QX_Path& operator=(const char* text);
  QX_Path& operator=(const wchar_t* text);

  /** Appends the text as it is: no separator is inserted. The pointers must not be null. */
  QX_Path& operator+=(const QX_Path& other);
  QX_Path& operator+=(const std::string& text);
  QX_Path& operator+=(const std::wstring& text);
  QX_Path& operator+=(const char* text);
  QX_Path& operator+=(const wchar_t* text);

  /** Appends "/" unless the path is empty or ends in "/". A trailing "\" is not a divider. @return *this */
  QX_Path& AddTrailingPathDivider();

  /** Empties the path. */
  void Clear();

  /** The text itself; valid until the path changes. */
  const std::string& Native() const;

  /** The text itself, zero-terminated; valid until the path changes. */
  const char* c_str() const;

  /** A copy of the text. */
  std::string String() const;

  /** The text as wide characters, by ConvertToOtherType. */
  std::wstring WString() const;

  bool Empty() const;

  /** Byte-wise order of the texts: negative, 0 or positive. */
  int Compare(const QX_Path& other) const;
  bool operator==(const QX_Path& other) const;
  bool operator!=(const QX_Path& other) const;

  /** The text up to and including the last "/"; empty when there is none. */
  QX_Path ExtractFilePath() const;

  /** The text behind the last "/"; all of it when there is none. */
  QX_Path ExtractFileName() const;

  /** The text from the last "." on, the dot included, if no "/" follows that dot; otherwise empty. */
  QX_Path ExtractExtension() const;

  /** The text before the last "." if no "/" follows that dot; otherwise all of it. */
  QX_Path RemoveExtension() const;

  /** True when the first character is "/". */
  bool IsAbsolutePath() const;

  /** UTF-8 of wide text, which ends at its first zero. */
  static std::string ConvertFromOtherType(const std::wstring& text);

  /** Wide characters of UTF-8 text. Text that is not valid UTF-8 is taken, all of it, as Windows-1252 instead. */
  static std::wstring ConvertToOtherType(const std::string& text);

 private:
  std::string text_;
};

/** The two texts joined as they are. */
QXPAF_API QX_Path operator+(const QX_Path& a, const QX_Path& b);

/**
 * Appends "/" in place unless the text is empty or ends in "/" or "\".
 *
 * @param text zero-terminated, never null, with room for one more character
 * @return text
 */
QXPAF_API char* IncludeTrailingPathDelimiter(char* text);

/**
 * A copy of the text with "/" appended unless it is empty or ends in "/". Unlike the form for a buffer, this one
 * appends behind a trailing "\" too. The library holds the instance for std::string only.
 */
template <class S>
QXPAF_API S IncludeTrailingPathDelimiter(const S& text);

extern template QXPAF_API std::string IncludeTrailingPathDelimiter<std::string>(const std::string& text);

#endif
