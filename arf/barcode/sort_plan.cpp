#include "arf/barcode/sort_plan.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

#include "arf/format/file_bytes.h"

namespace arf {
namespace {

constexpr std::string_view kHeader = "postcode,bsp,npsp";

bool IsDigit(char c)
{
  return c >= '0' && c <= '9';
}

std::string_view Trimmed(std::string_view text)
{
  constexpr std::string_view kSpace = " \t\r";
  const std::size_t first = text.find_first_not_of(kSpace);
  return first == std::string_view::npos ? std::string_view()
                                         : text.substr(first, text.find_last_not_of(kSpace) + 1 - first);
}

/** Takes what stands before `end` off a text, and the `end` too. */
std::string_view Take(std::string_view& text, char end)
{
  const std::size_t length = std::min(text.find(end), text.size());
  const std::string_view part = text.substr(0, length);
  text.remove_prefix(std::min(length + 1, text.size()));
  return part;
}

bool IsHeader(std::string_view line)
{
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  std::string text;
  std::transform(line.begin(), line.end(), std::back_inserter(text), lower);
  text.erase(std::remove(text.begin(), text.end(), ' '), text.end());
  return text == kHeader;
}

/** Year, month and day as "2026-05-31". */
bool IsDate(std::string_view text)
{
  constexpr std::string_view kForm = "0000-00-00";
  const auto fits = [](char c, char form) { return form == '-' ? c == '-' : IsDigit(c); };
  if (text.size() != kForm.size() || !std::equal(text.begin(), text.end(), kForm.begin(), fits)) return false;
  const std::string_view month = text.substr(5, 2);
  const std::string_view day = text.substr(8, 2);
  return month >= "01" && month <= "12" && day >= "01" && day <= "31";
}

std::size_t PostcodeNumber(std::string_view postcode)
{
  std::size_t number = 0;
  for (const char digit : postcode) number = number * 10 + static_cast<std::size_t>(digit - '0');
  return number;
}

/** In quotes, its beginning only when it is long. */
std::string Quoted(std::string_view text)
{
  constexpr std::size_t kMaxShown = 40;
  std::string quoted(1, '"');
  quoted.append(text.substr(0, kMaxShown)).append(text.size() > kMaxShown ? "...\"" : "\"");
  return quoted;
}

/** What is wrong with a plan number; empty when nothing is. */
std::string NumberFault(const char* column, std::string_view text)
{
  if (text.size() > SortPlan::kMaxNumberLength)
    return std::string(column) + ": " + Quoted(text) + " is longer than " + std::to_string(SortPlan::kMaxNumberLength) +
           " characters";
  const auto isBad = [](char c) { return c == '"' || static_cast<unsigned char>(c) < ' ' || c == '\x7F'; };
  if (std::any_of(text.begin(), text.end(), isBad))
    return std::string(column) + ": quotes and control characters cannot be used";
  return {};
}

}  // namespace

bool IsPostcode(std::string_view text)
{
  return text.size() == 4 && std::all_of(text.begin(), text.end(), IsDigit);
}

/** Takes a plan's text apart, line by line. */
class SortPlan::Reader
{
 public:
  explicit Reader(SortPlan& plan) : plan_(plan), rest_(plan.text_)
  {
    if (rest_.starts_with("\xEF\xBB\xBF")) rest_.remove_prefix(3);
  }

  /** What is wrong, with its line; empty when the plan was read. */
  std::string Read()
  {
    std::string fault = ReadHead();
    while (fault.empty() && NextLine()) fault = ReadRow();
    if (!fault.empty()) return std::to_string(lineNumber_) + ": " + fault;
    return plan_.entries_.empty() ? "there are no postcodes in it" : std::string();
  }

 private:
  /** The next line that is not blank. */
  bool NextLine()
  {
    while (!rest_.empty()) {
      line_ = Trimmed(Take(rest_, '\n'));
      ++lineNumber_;
      if (!line_.empty()) return true;
    }
    return false;
  }

  std::string ReadHead()
  {
    std::string_view row = NextLine() ? line_ : std::string_view();
    const bool isDateRow = Trimmed(Take(row, ',')) == "date";
    if (!isDateRow) return "the first row must be the plan's date, as in \"date,2026-05-31\"";
    plan_.date_ = Trimmed(row);
    if (!IsDate(plan_.date_)) return "date: " + Quoted(plan_.date_) + " is no date of the form 2026-05-31";
    if (!NextLine() || !IsHeader(line_)) return "the second row must be \"" + std::string(kHeader) + "\"";
    return {};
  }

  std::string ReadRow()
  {
    if (std::count(line_.begin(), line_.end(), ',') != 2) return "the row must have three fields: " + Quoted(line_);
    std::string_view row = line_;
    const std::string_view postcode = Trimmed(Take(row, ','));
    Entry entry;
    entry.bsp = Trimmed(Take(row, ','));
    entry.npsp = Trimmed(row);
    if (!IsPostcode(postcode)) return "postcode: " + Quoted(postcode) + " is not four digits";
    if (entry.bsp.empty() && entry.npsp.empty()) return "bsp and npsp are both empty";
    if (std::string fault = NumberFault("bsp", entry.bsp); !fault.empty()) return fault;
    if (std::string fault = NumberFault("npsp", entry.npsp); !fault.empty()) return fault;
    std::uint16_t& place = plan_.entryOf_[PostcodeNumber(postcode)];
    if (place != 0) return "postcode: " + std::string(postcode) + " is already that of line " + LineOf(place);
    plan_.entries_.push_back(entry);
    lines_.push_back(lineNumber_);
    place = static_cast<std::uint16_t>(plan_.entries_.size());
    return {};
  }

  std::string LineOf(std::uint16_t place) const { return std::to_string(lines_[place - std::size_t{1}]); }

  SortPlan& plan_;
  std::string_view rest_;
  std::string_view line_;
  std::size_t lineNumber_ = 0;
  std::vector<std::size_t> lines_;  ///< of the entries
};

std::unique_ptr<const SortPlan> SortPlan::Parse(std::string text, std::string& fault)
{
  std::unique_ptr<SortPlan> plan(new SortPlan(std::move(text)));
  fault = Reader(*plan).Read();
  return fault.empty() ? std::move(plan) : nullptr;
}

const SortPlan::Entry* SortPlan::Find(std::string_view postcode) const
{
  const std::size_t place = IsPostcode(postcode) ? entryOf_[PostcodeNumber(postcode)] : 0;
  return place == 0 ? nullptr : &entries_[place - 1];
}

SortPlanFile ReadSortPlan(const std::string& path)
{
  namespace fs = std::filesystem;
  std::error_code error;
  if (fs::status(path, error).type() == fs::file_type::not_found) return {};
  if (const auto size = fs::file_size(path, error); !error && size > SortPlan::kMaxBytes)
    return {nullptr, path + ": is larger than any sort plan"};
  OpenResult result;
  const FileBytes bytes = FileBytes::Acquire(path, OpenMode::Memory, result);
  if (result.failure != OpenFailure::None) return {nullptr, result.message};
  SortPlanFile file;
  file.plan = SortPlan::Parse(std::string(bytes.Bytes().Text()), file.fault);
  if (!file.plan) file.fault.insert(0, path + ":");
  return file;
}

SortPlanFile ReadSortPlanOf(const std::string& directory)
{
  const bool divided = directory.empty() || directory.back() == '/';
  return ReadSortPlan(directory + (divided ? "" : "/") + kSortPlanFileName);
}

}  // namespace arf
