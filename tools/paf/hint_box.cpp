#include "hint_box.h"

#include <unistd.h>

#include <algorithm>
#include <string_view>

namespace tool {
namespace {

constexpr std::string_view kPrompt = "Address: ";
constexpr std::string_view kHelp = "Up, Down: choose   Enter: take   Esc: leave";

bool IsFollowingByte(char c)
{
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

std::size_t Width(std::string_view text)
{
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsFollowingByte));
}

/** The beginning of a text, at most so many characters wide. */
std::string_view Beginning(std::string_view text, std::size_t columns)
{
  std::size_t size = 0;
  for (std::size_t width = 0; size < text.size(); ++size) {
    width += IsFollowingByte(text[size]) ? 0U : 1U;
    if (width > columns) {
      break;
    }
  }
  return text.substr(0, size);
}

std::string_view End(std::string_view text, std::size_t columns)
{
  while (Width(text) > columns || (!text.empty() && IsFollowingByte(text.front()))) {
    text.remove_prefix(1);
  }
  return text;
}

std::string Behind(const Hint& hint)
{
  return hint.IsFinal() ? hint.dpid : hint.count + (hint.count == "1" ? " address" : " addresses");
}

std::string HintLine(const Hint& hint, bool isChosen, std::size_t columns)
{
  const std::string line = (isChosen ? "> " : "  ") + hint.text + "  (" + Behind(hint) + ")";
  const std::string_view shown = Beginning(line, columns);
  return isChosen ? "\033[1m" + std::string(shown) + "\033[0m" : std::string(shown);
}

void WriteAll(std::string_view text)
{
  while (!text.empty()) {
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    if (written <= 0) {
      return;
    }
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

HintBox::HintBox(Session& session, std::string place, int most)
    : session_(session), place_(std::move(place)), most_(most)
{
}

std::optional<Hint> HintBox::Press(const Key& key)
{
  switch (key.kind) {
    case Key::Kind::Text:
      SetText(text_ + key.text);
      break;
    case Key::Kind::Backspace:
    case Key::Kind::EraseWord:
      Erase(key.kind == Key::Kind::EraseWord);
      break;
    case Key::Kind::EraseAll:
      SetText("");
      break;
    case Key::Kind::Up:
      chosen_ -= chosen_ > 0 ? 1U : 0U;
      break;
    case Key::Kind::Down:
      chosen_ += chosen_ + 1 < hints_.size() ? 1U : 0U;
      break;
    case Key::Kind::Enter:
    case Key::Kind::Tab:
      return Take();
    case Key::Kind::Leave:
    case Key::Kind::Resize:
    case Key::Kind::Other:
      break;
  }
  return std::nullopt;
}

void HintBox::Erase(bool wholeWord)
{
  std::string text = text_;
  const auto dropLast = [&text] {
    while (!text.empty() && IsFollowingByte(text.back())) {
      text.pop_back();
    }
    if (!text.empty()) {
      text.pop_back();
    }
  };
  dropLast();
  while (wholeWord && !text.empty() && text.back() != ' ') {
    dropLast();
  }
  SetText(std::move(text));
}

std::optional<Hint> HintBox::Take()
{
  if (chosen_ >= hints_.size()) {
    return std::nullopt;
  }
  const Hint hint = hints_[chosen_];
  if (hint.IsFinal()) {
    return hint;
  }
  SetText(hint.text);
  return std::nullopt;
}

/** A hint that only repeats the text is not what comes next, so the one behind it is chosen. */
void HintBox::SetText(std::string text)
{
  text_ = std::move(text);
  hints_.clear();
  chosen_ = 0;
  trouble_.clear();
  if (text_.empty()) {
    return;
  }
  const Reply reply = ReadHints(session_, text_, place_, most_, hints_);
  trouble_ = reply.status == 0 ? "" : StatusText(reply);
  if (hints_.size() > 1 && hints_.front().text == text_ && !hints_.front().IsFinal()) {
    chosen_ = 1;
  }
}

std::string Drawing(const HintBox& box, std::size_t columns, std::size_t rows)
{
  const std::size_t room = columns > kPrompt.size() + 1 ? columns - kPrompt.size() - 1 : 1;
  const std::string_view text = End(box.Text(), room);
  const std::size_t most = rows > 3 ? rows - 2 : 1;
  const std::size_t first = box.Chosen() < most ? 0 : box.Chosen() + 1 - most;
  const std::size_t last = std::min(box.Hints().size(), first + most);
  std::string drawing = "\r\033[J";
  drawing.append(kPrompt).append(text);
  for (std::size_t i = first; i < last; ++i) {
    drawing += "\r\n" + HintLine(box.Hints()[i], i == box.Chosen(), columns - 1);
  }
  drawing += "\r\n";
  drawing += Beginning(box.Trouble().empty() ? kHelp : std::string_view(box.Trouble()), columns - 1);
  drawing += "\033[" + std::to_string(last - first + 1) + "A\r";
  drawing += "\033[" + std::to_string(Width(kPrompt) + Width(text)) + "C";
  return drawing;
}

std::optional<Hint> ChooseHint(Session& session, const std::string& place, int most)
{
  Terminal terminal;
  HintBox box(session, place, most);
  std::optional<Hint> taken;
  WriteAll(Drawing(box, terminal.Columns(), terminal.Rows()));
  for (Key key = terminal.ReadKey(); key.kind != Key::Kind::Leave; key = terminal.ReadKey()) {
    taken = box.Press(key);
    if (taken) {
      break;
    }
    if (!terminal.HasKey()) {
      WriteAll(Drawing(box, terminal.Columns(), terminal.Rows()));
    }
  }
  WriteAll("\r\033[J");
  return taken;
}

}  // namespace tool
