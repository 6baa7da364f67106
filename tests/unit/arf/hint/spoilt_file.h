/** Database files of which a section holds anything, with checksums that agree. */
#ifndef QXPAF_TESTS_UNIT_ARF_HINT_SPOILT_FILE_H
#define QXPAF_TESTS_UNIT_ARF_HINT_SPOILT_FILE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "arf/format/checksum.h"
#include "arf/format/database.h"
#include "arf/format/layout.h"

namespace arf_test {

class SpoiltFile
{
 public:
  explicit SpoiltFile(const std::vector<std::uint8_t>& whole) : words_(whole.size() / 8)
  {
    std::memcpy(words_.data(), whole.data(), whole.size());
  }

  /** Overwrites some bytes of a section, or all of it. */
  void Spoil(arf::layout::SectionId id, std::mt19937& random)
  {
    const Section section = Find(id);
    ASSERT_GT(section.length, 0U);
    const bool all = random() % 4 == 0;
    for (std::size_t n = all ? section.length : 1 + random() % 40; n > 0; --n)
      Bytes()[section.offset + (all ? n - 1 : random() % (random() % 2 == 0 ? section.length : 64))] =
          static_cast<std::uint8_t>(random());
    Sign(section);
  }

  /** Makes a section up to 63 bytes shorter, so that the counts in it and in others promise more than it has. */
  void Shorten(arf::layout::SectionId id, std::mt19937& random)
  {
    const Section section = Find(id);
    ASSERT_GT(section.length, 0U);
    const std::uint64_t shorter = section.length - random() % ((section.length - 1) % 64 + 1);
    std::memset(Bytes() + section.offset + shorter, 0, section.length - shorter);
    std::memcpy(Bytes() + section.entry + arf::layout::entry::kLength, &shorter, sizeof shorter);
    Sign(section);
  }

  /** Gives a section another id, so that it is not found. */
  void Rename(arf::layout::SectionId id, std::uint32_t other)
  {
    namespace header = arf::layout::header;
    namespace entry = arf::layout::entry;
    for (std::uint32_t i = 0; i < Number<std::uint32_t>(header::kSectionCount); ++i) {
      const std::size_t at = header::kSize + i * entry::kSize + entry::kId;
      if (Number<std::uint32_t>(at) == static_cast<std::uint32_t>(id)) std::memcpy(Bytes() + at, &other, sizeof other);
    }
    std::memset(Bytes() + header::kChecksum, 0, sizeof(std::uint64_t));
    SetChecksum(header::kChecksum, 0, Number<std::uint32_t>(header::kHeaderLength));
  }

  void Save(const std::string& path) const
  {
    std::ofstream file(path, std::ios::binary);
    file.write(static_cast<const char*>(static_cast<const void*>(words_.data())),
               static_cast<std::streamsize>(words_.size() * sizeof(std::uint64_t)));
  }

  /** The bytes must outlive the database. */
  std::unique_ptr<arf::Database> Open()
  {
    arf::OpenResult result;
    std::unique_ptr<arf::Database> database = arf::Database::OpenBytes({Bytes(), words_.size() * 8}, "spoilt", result);
    EXPECT_NE(database, nullptr) << result.message;
    return database;
  }

 private:
  struct Section
  {
    std::size_t entry = 0;  ///< where the table tells of it
    std::uint64_t offset = 0, length = 0;
  };

  Section Find(arf::layout::SectionId id)
  {
    namespace header = arf::layout::header;
    namespace entry = arf::layout::entry;
    for (std::uint32_t i = 0; i < Number<std::uint32_t>(header::kSectionCount); ++i) {
      const std::size_t at = header::kSize + i * entry::kSize;
      if (Number<std::uint32_t>(at + entry::kId) == static_cast<std::uint32_t>(id))
        return {at, Number<std::uint64_t>(at + entry::kOffset), Number<std::uint64_t>(at + entry::kLength)};
    }
    return {};
  }

  /** Makes the checksums of a section, of up to the next one's beginning, and of the header agree. */
  void Sign(const Section& section)
  {
    namespace header = arf::layout::header;
    SetChecksum(section.entry + arf::layout::entry::kChecksum, section.offset, arf::layout::Aligned(section.length));
    std::memset(Bytes() + header::kChecksum, 0, sizeof(std::uint64_t));
    SetChecksum(header::kChecksum, 0, Number<std::uint32_t>(header::kHeaderLength));
  }

  std::uint8_t* Bytes() { return static_cast<std::uint8_t*>(static_cast<void*>(words_.data())); }

  template <class Value>
  Value Number(std::size_t at)
  {
    Value value;
    std::memcpy(&value, Bytes() + at, sizeof value);
    return value;
  }

  void SetChecksum(std::size_t at, std::size_t first, std::size_t size)
  {
    arf::Checksum sum;
    sum.Add(Bytes() + first, size);
    const std::uint64_t value = sum.Value();
    std::memcpy(Bytes() + at, &value, sizeof value);
  }

  std::vector<std::uint64_t> words_;  ///< aligned as a file is
};

}  // namespace arf_test

#endif
