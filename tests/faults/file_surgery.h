/**
 * Cutting database files open: changing single fields and making the checksums right again.
 */
#ifndef QXPAF_TESTS_FAULTS_FILE_SURGERY_H
#define QXPAF_TESTS_FAULTS_FILE_SURGERY_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "arf/format/layout.h"

namespace arf_test {

using Bytes = std::vector<std::uint8_t>;
using arf::layout::SectionId;

template <class Number>
Number Get(const Bytes& bytes, std::size_t offset)
{
  Number number = 0;
  if (offset <= bytes.size() && sizeof number <= bytes.size() - offset) {
    std::memcpy(&number, bytes.data() + offset, sizeof number);
  }
  return number;
}

template <class Number>
void Put(Bytes& bytes, std::size_t offset, Number number)
{
  if (offset <= bytes.size() && sizeof number <= bytes.size() - offset) {
    std::memcpy(bytes.data() + offset, &number, sizeof number);
  }
}

/** Where the entry of a section is in the section table; 0 when there is none. */
std::size_t EntryOf(const Bytes& bytes, SectionId id);
/** Where a section begins. */
std::size_t OffsetOf(const Bytes& bytes, SectionId id);
std::size_t LengthOf(const Bytes& bytes, SectionId id);

/** Makes the header's checksum right. */
void ResealHeader(Bytes& bytes);
/** Makes the checksums of all sections that lie inside the file right, then that of the header. */
void Reseal(Bytes& bytes);

/** The file with another content for one section, everything else moved and right again. */
Bytes WithSection(const Bytes& bytes, SectionId id, const Bytes& content);
/** The file with a further section at its end. */
Bytes WithExtraSection(const Bytes& bytes, std::uint32_t id, const Bytes& content);

}  // namespace arf_test

#endif
