// Short ways to write text with arbitrary bytes and elements in tests.
#ifndef QXPAF_TESTS_UNIT_TEXT_ENCODING_TEXT_H
#define QXPAF_TESTS_UNIT_TEXT_ENCODING_TEXT_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>

namespace encoding_test {

inline std::string Bytes(std::initializer_list<int> values)
{
  std::string out;
  for (const int value : values) out += static_cast<char>(value);
  return out;
}

inline std::wstring Wide(std::initializer_list<std::int64_t> values)
{
  std::wstring out;
  for (const std::int64_t value : values) out += static_cast<wchar_t>(value);
  return out;
}

/** The elements in hexadecimal, for messages. */
template <class String>
std::string Hex(const String& text)
{
  std::ostringstream out;
  out << std::hex;
  for (const auto element : text)
    out << (sizeof element == 1 ? static_cast<unsigned char>(element) : static_cast<std::uint32_t>(element)) << ' ';
  return out.str();
}

/** Zero-terminated text that ends where its allocation ends, at any alignment of its start. */
template <class Element>
class ExactText
{
 public:
  explicit ExactText(const std::basic_string<Element>& text, std::size_t offset = 0)
      : offset_(offset), elements_(new Element[offset + text.size() + 1])
  {
    text.copy(elements_.get() + offset, text.size());
    elements_[offset + text.size()] = Element();
  }

  const Element* Get() const { return elements_.get() + offset_; }

 private:
  std::size_t offset_;
  std::unique_ptr<Element[]> elements_;
};

}  // namespace encoding_test

#endif
