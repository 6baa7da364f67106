/**
 * Words of names that are written in more than one way ("MOUNT" and "MT", "FIRST" and "1ST"). Names are compared in a
 * canonical form, so that every way finds the name whichever way the data has it; which of them was exact is told apart
 * afterwards.
 */
#ifndef QXPAF_ARF_MATCH_CANONICAL_WORDS_H
#define QXPAF_ARF_MATCH_CANONICAL_WORDS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace arf {

struct CanonicalRow
{
  std::string_view written;
  std::string_view canonical;
};

/** All rows, sorted by written form; no canonical form is a written form of another row. */
std::span<const CanonicalRow> CanonicalRows();

/** The canonical form of a word of a match key; the word itself when it has no other. */
std::string_view CanonicalWord(std::string_view word);

/**
 * Whether a word next to another is one of several initials, which stand for themselves: the E of "J.E." is no EAST,
 * but that of "5 E" is.
 */
bool AreInitials(std::string_view word, std::string_view neighbour);

/** "THE", which names have or lack in front of other words. */
bool IsArticle(std::string_view word);

/** Continues the hash of a name with its next word; FNV-1a. */
inline std::uint32_t HashCanonical(std::uint32_t hash, std::string_view canonicalWord)
{
  for (const char c : canonicalWord) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  return hash;
}
inline constexpr std::uint32_t kHashStart = 2166136261U;

/**
 * The canonical form of a name: its words' canonical forms without spaces, so that "MC DONALD" equals "MCDONALD". An
 * article in front of other words is left out and remembered, so that "GAP" finds "THE GAP".
 */
class CanonicalName
{
 public:
  /** @param key  upper case, single-spaced; what is beyond 255 bytes is cut off. */
  explicit CanonicalName(std::string_view key);

  std::string_view View() const { return {text_.data(), length_}; }
  const char* Terminated() const { return text_.data(); }  ///< zero-terminated
  bool HasArticle() const { return hasArticle_; }
  std::uint32_t Hash() const;

 private:
  std::array<char, 256> text_;
  std::size_t length_ = 0;
  bool hasArticle_ = false;
};

}  // namespace arf

#endif
