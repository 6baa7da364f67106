/** A box to type an address into, with what may be meant below it. */
#ifndef PAF_TOOL_HINT_BOX_H
#define PAF_TOOL_HINT_BOX_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "hints.h"
#include "terminal.h"

namespace tool {

/** The text, its hints, and the one that is chosen; knows nothing of the terminal. */
class HintBox
{
 public:
  HintBox(Session& session, std::string place, int most);

  const std::string& Text() const { return text_; }
  const std::vector<Hint>& Hints() const { return hints_; }
  std::size_t Chosen() const { return chosen_; }
  /** Why there are no hints, when that is no answer about the text. */
  const std::string& Trouble() const { return trouble_; }

  /** Does what a key means; the hint, when the key took a final one. */
  std::optional<Hint> Press(const Key& key);

 private:
  void SetText(std::string text);
  void Erase(bool wholeWord);
  std::optional<Hint> Take();

  Session& session_;
  std::string place_;
  int most_;
  std::string text_;
  std::vector<Hint> hints_;
  std::size_t chosen_ = 0;
  std::string trouble_;
};

/** The box as it is to be drawn: from the line with the cursor downwards, and the cursor back to that line. */
std::string Drawing(const HintBox& box, std::size_t columns, std::size_t rows);

/** Lets the user type until a final hint is taken; nothing when the user leaves. */
std::optional<Hint> ChooseHint(Session& session, const std::string& place, int most);

}  // namespace tool

#endif
