/**
 * Tables of words with several written forms. A table is a constant array of rows sorted by full form; a WordTable adds
 * the look-up by any written form. Nothing allocates; the index is made on first use and is safe to use from any
 * thread.
 */
#ifndef QXPAF_ARF_TABLES_WORD_TABLE_H
#define QXPAF_ARF_TABLES_WORD_TABLE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace arf {

/** All upper case. Written forms are single-spaced and free of punctuation, the full form may have some. */
struct WordRow
{
  std::string_view full;
  std::string_view abbreviation;  ///< for print; equal to `full` where there is none
  std::string_view others;        ///< further written forms, separated by '|'; those with no spaces and hyphens too
};

/** Index of a row array by written form: the full form, the abbreviation and the others. */
class WordTable
{
 public:
  static constexpr std::size_t kMaxForms = 1024;

  explicit WordTable(std::span<const WordRow> rows);

  std::span<const WordRow> Rows() const { return rows_; }
  /** The row with this written form, or null. */
  const WordRow* Find(std::string_view written) const;
  /** The full form of a written form, or an empty view. */
  std::string_view Expand(std::string_view written) const;
  /** The abbreviation of a full form (or other written form); the argument itself when unknown. */
  std::string_view Abbreviate(std::string_view written) const;

 private:
  struct Form
  {
    std::string_view written;
    std::uint16_t row = 0;
  };
  static constexpr std::size_t kSlots = 2 * kMaxForms;  ///< a power of two

  void AddForm(std::string_view written, std::size_t row);
  /** The place of a written form, or the free one where it would be put. */
  std::size_t SlotOf(std::string_view written) const;

  std::span<const WordRow> rows_;
  std::array<Form, kSlots> slots_{};  ///< open addressing, linear probing; half of them at least are free
  std::size_t formCount_ = 0;
  std::size_t longest_ = 0;
};

}  // namespace arf

#endif
