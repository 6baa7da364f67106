// Encoding wide elements in blocks.
#ifndef QXPAF_SRC_TEXT_UTF8_ENCODE_BLOCKS_H
#define QXPAF_SRC_TEXT_UTF8_ENCODE_BLOCKS_H

namespace qxpaf {

// Encodes blocks from p on, up to one with an element from U+D800 on (or a negative one) or a short one, and moves p
// behind them. Returns the end of the bytes, behind which fewer than sixteen more may have been written. Does nothing
// on processors without the instructions for it.
char* EncodeBlocks(const wchar_t*& p, const wchar_t* stop, char* to);

}  // namespace qxpaf

#endif
