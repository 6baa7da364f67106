/** Reading properties, and what every answer that refuses small buffers has in common. */
#ifndef QXPAF_TESTS_BLACKBOX_SUPPORT_PROPERTIES_H
#define QXPAF_TESTS_BLACKBOX_SUPPORT_PROPERTIES_H

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace blackbox {

/** Status and text of one read. */
struct Answer
{
  int status;
  std::string text;

  bool operator==(const Answer& other) const { return status == other.status && text == other.text; }
};

void PrintTo(const Answer& answer, std::ostream* out);

/** Reads a property into a guarded buffer; the answer must be terminated. */
Answer Read(int id, const std::string& name, size_t size = 4096);

/** The same through the function without an Id. */
Answer ReadDefault(const std::string& name, size_t size = 4096);

/** Reads a property that must be answered with status 0. */
std::string Property(int id, const std::string& name);

/** The name in capitals, in small letters, and with both mixed, besides as it is. */
std::vector<std::string> Spellings(const std::string& name);

/** A read of one property into a buffer. */
using Reader = std::function<int(char* out, int size)>;

/** Expects the answer at sizes that hold it, 6406 and an empty text at smaller ones, and 6406 alone without a buffer.
 */
void ExpectWholeOrRefused(const Reader& read, const std::string& expected);

/** Expects 6406 for no buffer and for sizes below 1, which nothing is written to. */
void ExpectRefusesNoBuffer(const Reader& read);

}  // namespace blackbox

#endif
