// Membership of bytes in a small set, looked up in one step.
#ifndef QXPAF_SRC_TEXT_BYTE_SET_H
#define QXPAF_SRC_TEXT_BYTE_SET_H

namespace qxpaf {

class ByteSet
{
 public:
  // The bytes of zero-terminated text; the terminator is no member.
  constexpr explicit ByteSet(const char* members)
  {
    for (; *members != '\0'; ++members) has_[static_cast<unsigned char>(*members)] = true;
  }

  constexpr bool Has(char byte) const { return has_[static_cast<unsigned char>(byte)]; }

 private:
  bool has_[256] = {};
};

}  // namespace qxpaf

#endif
