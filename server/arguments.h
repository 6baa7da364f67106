/** Taking a request line apart. */
#ifndef PAFD_ARGUMENTS_H
#define PAFD_ARGUMENTS_H

#include <array>
#include <initializer_list>
#include <string>
#include <string_view>

namespace pafd {

/** What a field of a request is. */
enum class Field
{
  None,    // ends a list of fields
  Id,      // the instance
  Number,  // an integer of any size
  Text,    // one field
  Lines,   // a text that may have several lines: they arrive as further fields and get their line feeds back
  Record   // as Lines, but the further fields may be those of an address record
};

/** The fields of a request in order, with at most one Lines or Record, which takes every field that is left over. */
class FieldList
{
 public:
  constexpr FieldList(std::initializer_list<Field> fields)
  {
    for (const Field field : fields) {
      fields_[count_++] = field;
    }
  }
  constexpr const Field* begin() const { return fields_.data(); }
  constexpr const Field* end() const { return fields_.data() + count_; }
  constexpr std::size_t Count() const { return count_; }

 private:
  std::array<Field, 6> fields_{};
  std::size_t count_ = 0;
};

/** The arguments of one request. Texts hold no NUL: they end at the first. */
struct Arguments
{
  int id = 0;
  std::array<long, 2> numbers{};
  std::array<std::string, 4> texts{};
};

/** The integer at the start of a text, after white space; 0 without digits, the nearest long when it is out of range.
 */
long ReadNumber(std::string_view text);

/** ReadNumber, brought to the nearest int. */
int ReadInt(std::string_view text);

/** Cuts the name off a request line. @return the rest behind the name's TAB; empty without one */
std::string_view SplitName(std::string_view line, std::string_view& name);

/**
 * Reads the fields behind a request's name. Fields that are missing read as 0 and "".
 *
 * @param text  what follows the name's TAB
 * @return true when Lines or Record took more than one field, which are joined by line feeds
 */
bool ReadArguments(std::string_view text, const FieldList& fields, Arguments& arguments);

}  // namespace pafd

#endif
