/**
 * The bytes of a database file, mapped or loaded, and nothing about what they mean.
 */
#ifndef QXPAF_ARF_FORMAT_FILE_BYTES_H
#define QXPAF_ARF_FORMAT_FILE_BYTES_H

#include <string>

#include "arf/format/byte_reader.h"
#include "arf/format/database.h"

namespace arf {

/** Owns a mapping (of the file or of private memory) and gives it back. */
class FileBytes
{
 public:
  FileBytes() = default;
  ~FileBytes();
  FileBytes(FileBytes&& other) noexcept;
  FileBytes& operator=(FileBytes&& other) noexcept;

  /** Maps or reads a regular file. On failure `result` says why, naming the file. An empty file gives no bytes. */
  static FileBytes Acquire(const std::string& path, OpenMode mode, OpenResult& result);

  ByteReader Bytes() const { return {static_cast<const std::uint8_t*>(data_), size_}; }

  /** Tells the kernel how the pages will be used once the file has been verified from end to end. */
  void SettleInto(OpenMode mode);

 private:
  FileBytes(void* data, std::size_t size) : data_(data), size_(size) {}
  static FileBytes Map(int descriptor, std::size_t size, OpenMode mode, OpenResult& result);
  static FileBytes Load(int descriptor, std::size_t size, OpenResult& result);

  void* data_ = nullptr;
  std::size_t size_ = 0;
};

/** Sets a refusal: the path, a colon, and what is wrong. */
void Refuse(OpenResult& result, OpenFailure failure, const std::string& path, const std::string& what);

}  // namespace arf

#endif
