// Splitting text into an array of strings, and freeing such arrays.
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>

#include "qxpaf/text/normalise.h"

namespace qxpaf {
namespace {

// Without blanks around it; null when memory runs out.
char* NewPiece(const char* first, const char* last)
{
  const auto length = static_cast<std::size_t>(last - first);
  char* const piece = new (std::nothrow) char[length + 1];
  if (piece == nullptr) return nullptr;
  std::memcpy(piece, first, length);
  piece[length] = '\0';
  Trim_(piece, ' ');
  return piece;
}

// Fills pieces, which are all null; false when memory runs out.
bool FillPieces(char** pieces, const char* s, const char* end, char sep)
{
  for (;; ++s) {
    const char* const stop = std::find(s, end, sep);
    *pieces = NewPiece(s, stop);
    if (*pieces++ == nullptr) return false;
    if (stop == end) return true;
    s = stop;
  }
}

template <class Element>
void FreeStrings(Element** a)
{
  if (a == nullptr) return;
  for (Element** p = a; *p != nullptr; ++p) delete[] * p;
  delete[] a;
}

}  // namespace
}  // namespace qxpaf

char** Split_(const char* s, char sep)
{
  // A separator of zero is found nowhere: the terminator is not searched.
  const char* const end = s + std::strlen(s);
  const auto n = static_cast<std::size_t>(std::count(s, end, sep)) + 1;
  char** const pieces = new (std::nothrow) char*[n + 1]();
  if (pieces != nullptr && qxpaf::FillPieces(pieces, s, end, sep)) return pieces;
  FreeArray_(pieces);
  return nullptr;
}

void FreeArray_(char** a)
{
  qxpaf::FreeStrings(a);
}

void FreeArray_(wchar_t** a)
{
  qxpaf::FreeStrings(a);
}

template void delete_array_and_null<char>(char*&);
template void delete_array_and_null<char*>(char**&);
