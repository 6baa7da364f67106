#include "blackbox/support/delivery.h"

#include "qxpaf/paf.h"

namespace blackbox {
namespace {

size_t BytesFor(const ExportedFunction& function, int size)
{
  if (function.impliedSize != 0) return static_cast<size_t>(function.impliedSize);
  return size + function.extra < 1 ? 0 : static_cast<size_t>(size + function.extra);
}

}  // namespace

Delivery::Delivery(const ExportedFunction& function, int id, int size, const std::string& in)
    : function_(function), bytes_(BytesFor(function, size)), buffer_(function.inPlace ? in : std::string(), bytes_)
{
  if (!function.inPlace) buffer_.data()[0] = GuardedBuffer::kFill;
  before_ = buffer_.Bytes();
  status_ = function.run(id, in.c_str(), buffer_.data(), size);
}

void Delivery::Expect(const std::string& answer)
{
  const bool noRoom = bytes_ == 0 && (function_.checksSize || function_.output == Output::kRefused);
  const bool tooLong = function_.output == Output::kRefused && answer.size() >= bytes_;
  EXPECT_EQ(status_, noRoom || tooLong ? PAF_ERR_BUFFER_TOO_SMALL : 0);
  if (bytes_ == 0 || tooLong) {
    EXPECT_TRUE(IsUnchanged());
  } else {
    EXPECT_EQ(Text(), answer.substr(0, std::min(bytes_ - 1, static_cast<size_t>(function_.most))));
  }
  ExpectUnchangedBehindTheSize();
}

void Delivery::ExpectUnchangedBehindTheSize()
{
  const size_t from = std::min(bytes_, before_.size());
  EXPECT_EQ(buffer_.Bytes().substr(from), before_.substr(from));
}

}  // namespace blackbox
