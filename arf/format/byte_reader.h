/**
 * The one way in which the bytes of a database file are read. A ByteReader is a view of some bytes; every access is
 * tested against its end, and the test subtracts from the size that is left instead of adding to an offset out of the
 * file, because such a sum can wrap round and pass. What lies outside reads as zero or as nothing.
 */
#ifndef QXPAF_ARF_FORMAT_BYTE_READER_H
#define QXPAF_ARF_FORMAT_BYTE_READER_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace arf {

static_assert(std::endian::native == std::endian::little, "database files are little-endian and read in place");

class ByteReader
{
 public:
  ByteReader() = default;
  ByteReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  const std::uint8_t* Data() const { return data_; }
  std::size_t Size() const { return size_; }

  /** Whether `length` bytes at `offset` lie inside. */
  bool Holds(std::uint64_t offset, std::uint64_t length) const { return offset <= size_ && length <= size_ - offset; }

  /** A part of the bytes; empty where it is not wholly inside. */
  ByteReader Part(std::uint64_t offset, std::uint64_t length) const
  {
    return Holds(offset, length) ? ByteReader(data_ + offset, static_cast<std::size_t>(length)) : ByteReader();
  }
  /** The bytes from `offset` on. */
  ByteReader From(std::uint64_t offset) const { return offset <= size_ ? Part(offset, size_ - offset) : ByteReader(); }

  std::uint8_t U8At(std::uint64_t offset) const { return At<std::uint8_t>(offset); }
  std::uint16_t U16At(std::uint64_t offset) const { return At<std::uint16_t>(offset); }
  std::uint32_t U32At(std::uint64_t offset) const { return At<std::uint32_t>(offset); }
  std::uint64_t U64At(std::uint64_t offset) const { return At<std::uint64_t>(offset); }

  /** The `bits` bits, at most 57, from bit `first` on; zero unless eight bytes follow the byte where they begin. */
  std::uint64_t BitsAt(std::uint64_t first, std::uint32_t bits) const
  {
    return U64At(first / 8) >> (first % 8) & ((std::uint64_t{1} << bits) - 1);
  }

  /** The bytes as 32-bit numbers; a rest of up to three bytes is left out. The data must be aligned to four bytes. */
  std::span<const std::uint32_t> Words() const
  {
    return {static_cast<const std::uint32_t*>(static_cast<const void*>(data_)), size_ / sizeof(std::uint32_t)};
  }

  std::string_view Text() const { return {static_cast<const char*>(static_cast<const void*>(data_)), size_}; }

  /**
   * Takes a number off the front: seven bits a byte, least significant first, the top bit set on all but the last.
   * Zero, and nothing left to read, when the number does not end in time or has more than 32 bits.
   */
  std::uint32_t TakeVarint()
  {
    if (size_ > 0 && data_[0] < 0x80) {
      const std::uint32_t value = data_[0];
      Skip(1);
      return value;
    }
    return TakeLongVarint();
  }

  /** As TakeVarint, with up to 63 bits. */
  std::uint64_t TakeWideVarint()
  {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < 9 && i < size_; ++i) {
      value |= static_cast<std::uint64_t>(data_[i] & 0x7F) << (7 * i);
      if (data_[i] >= 0x80) continue;
      Skip(i + 1);
      return value;
    }
    return Fail();
  }

  /** Takes a signed number off the front, stored as a varint with the sign in the lowest bit. */
  std::uint32_t TakeZigzag()
  {
    const std::uint32_t coded = TakeVarint();
    return (coded >> 1) ^ (0U - (coded & 1U));
  }

 private:
  template <class Number>
  Number At(std::uint64_t offset) const
  {
    Number value = 0;
    if (Holds(offset, sizeof value)) std::memcpy(&value, data_ + offset, sizeof value);
    return value;
  }

  void Skip(std::size_t count)
  {
    data_ += count;
    size_ -= count;
  }

  std::uint32_t TakeLongVarint()
  {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < 5 && i < size_; ++i) {
      value |= static_cast<std::uint64_t>(data_[i] & 0x7F) << (7 * i);
      if (data_[i] < 0x80) {
        Skip(i + 1);
        return value <= UINT32_MAX ? static_cast<std::uint32_t>(value) : Fail();
      }
    }
    return Fail();
  }

  std::uint32_t Fail()
  {
    Skip(size_);
    return 0;
  }

  const std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace arf

#endif
