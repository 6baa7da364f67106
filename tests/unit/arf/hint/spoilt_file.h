/** Database files whose hint sections hold anything, with checksums that agree. */
#ifndef QXPAF_TESTS_UNIT_ARF_HINT_SPOILT_FILE_H
#define QXPAF_TESTS_UNIT_ARF_HINT_SPOILT_FILE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
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
    namespace header = arf::layout::header;
    namespace entry = arf::layout::entry;
    for (std::uint32_t i = 0; i < Number<std::uint32_t>(header::kSectionCount); ++i) {
      const std::size_t at = header::kSize + i * entry::kSize;
      if (Number<std::uint32_t>(at + entry::kId) != static_cast<std::uint32_t>(id)) continue;
      const auto offset = Number<std::uint64_t>(at + entry::kOffset);
      const auto length = Number<std::uint64_t>(at + entry::kLength);
      ASSERT_GT(length, 0U);
      const bool all = random() % 4 == 0;
      for (std::size_t n = all ? length : 1 + random() % 40; n > 0; --n)
        Bytes()[offset + (all ? n - 1 : random() % (random() % 2 == 0 ? length : 64))] =
            static_cast<std::uint8_t>(random());
      SetChecksum(at + entry::kChecksum, offset, arf::layout::Aligned(length));
    }
    std::memset(Bytes() + header::kChecksum, 0, sizeof(std::uint64_t));
    SetChecksum(header::kChecksum, 0, Number<std::uint32_t>(header::kHeaderLength));
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
