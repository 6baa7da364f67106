/** The names of the address record's fields, and the choice of fields that answers have. */
#ifndef QXPAF_ARF_AU_RECORD_FIELDS_H
#define QXPAF_ARF_AU_RECORD_FIELDS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "arf/format/database.h"
#include "arf/match/bounded_text.h"
#include "qxpaf/arf_au.h"

namespace arf {

/** A field of the record, or an attribute column of the database. */
class FieldChoice
{
 public:
  static FieldChoice Field(unsigned number) { return FieldChoice(number); }
  static FieldChoice Attribute(std::uint32_t column) { return FieldChoice(kFirstAttribute + column); }

  FieldChoice() = default;
  bool IsAttribute() const { return code_ >= kFirstAttribute; }
  std::uint32_t Column() const { return code_ - kFirstAttribute; }
  unsigned Number() const { return code_; }

 private:
  static constexpr std::uint32_t kFirstAttribute = 1000;
  explicit FieldChoice(std::uint32_t code) : code_(code) {}
  std::uint32_t code_ = 0;
};

/** The name of a field, 1 to PAF_AU_FIELD_COUNT; reserved ones have none. */
std::string_view FieldName(unsigned number);

/** The attribute columns of a database that fill fields. */
class FieldColumns
{
 public:
  explicit FieldColumns(const Database& database);
  /** kNoIndex for a field that is filled otherwise, or whose column the database does not have. */
  std::uint32_t ColumnOf(unsigned number) const { return number <= PAF_AU_FIELD_COUNT ? columns_[number] : kNoIndex; }

 private:
  std::array<std::uint32_t, PAF_AU_FIELD_COUNT + 1> columns_;
};

/** A field by name (ignoring case) or number, or an attribute column by name. */
std::optional<FieldChoice> FindField(const Database& database, std::string_view text);

/** Which fields answers have, in which order. */
class FieldList
{
 public:
  static constexpr std::size_t kMax = 96;

  /** Fields 1 to 8. */
  FieldList();
  /** All fields of the record. */
  static FieldList Whole();

  /**
   * Reads names and numbers separated by "," or ";". Nothing changes when one of them is unknown, when there are none,
   * or when there are more than kMax.
   * @return what is wrong, a view of `text` or of a constant; empty when the list was taken
   */
  std::string_view Read(const Database& database, std::string_view text);

  std::span<const FieldChoice> Fields() const { return {fields_.data(), count_}; }
  /** Whether a field tells more than an address's identifiers and attributes, which are known without decoding it. */
  bool NeedPoint() const { return needPoint_; }
  /**
   * The names (numbers for reserved fields), separated by ";".
   *
   * @param database  the one that attribute columns were chosen from; null where there are none
   */
  void Write(const Database* database, BoundedText& text) const;

 private:
  std::array<FieldChoice, kMax> fields_;
  std::size_t count_ = 0;
  bool needPoint_ = true;
};

}  // namespace arf

#endif
