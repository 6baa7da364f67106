#include "barcode_svg.h"

#include <array>
#include <charconv>
#include <filesystem>
#include <system_error>

#include "arf/build/build_error.h"
#include "arf/build/output_file.h"
#include "exit_code.h"

namespace tool {
namespace {

// Millimetres; in brackets what the post office allows.
constexpr double kPitch = 25.4 / 23.5;  // [22 to 25 bars in 25.4]
constexpr double kBarWidth = 0.5;       // [0.4 to 0.6]
constexpr double kFullHeight = 5.0;     // [4.2 to 5.8]
constexpr double kTrackerHeight = 1.3;  // [1.0 to 1.6]
constexpr double kQuietBeside = 6.0;    // [at least 6]
constexpr double kQuietAbove = 2.0;     // [at least 2]
constexpr double kTrackerTop = (kFullHeight - kTrackerHeight) / 2;
constexpr double kHalfHeight = kTrackerTop + kTrackerHeight;  // of ascender and descender [2.6 to 3.7]
static_assert(kHalfHeight > 3.1 && kHalfHeight < 3.2);

/** Down to a tenth of a micrometre, whatever the locale. */
std::string Number(double value)
{
  std::array<char, 32> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 4);
  return {text.data(), end};
}

std::string Attribute(const char* name, const std::string& value)
{
  return std::string(" ").append(name).append("=\"").append(value).append("\"");
}

std::string Rectangle(double x, double y, double width, double height)
{
  return "<rect" + Attribute("x", Number(x)) + Attribute("y", Number(y)) + Attribute("width", Number(width)) +
         Attribute("height", Number(height)) + "/>\n";
}

std::string Bar(char state, double x)
{
  const bool rises = state == '0' || state == '1';
  const bool falls = state == '0' || state == '2';
  const double height = rises && falls ? kFullHeight : rises || falls ? kHalfHeight : kTrackerHeight;
  return Rectangle(x, kQuietAbove + (rises ? 0 : kTrackerTop), kBarWidth, height);
}

}  // namespace

std::string BarcodeSvg(std::string_view bars, const std::string& title)
{
  const double length = bars.empty() ? 0 : static_cast<double>(bars.size() - 1) * kPitch + kBarWidth;
  const double width = length + 2 * kQuietBeside;
  const double height = kFullHeight + 2 * kQuietAbove;
  std::string svg = "<svg" + Attribute("xmlns", "http://www.w3.org/2000/svg") +
                    Attribute("width", Number(width) + "mm") + Attribute("height", Number(height) + "mm") +
                    Attribute("viewBox", "0 0 " + Number(width) + " " + Number(height)) + ">\n<title>" + title +
                    "</title>\n<g fill=\"white\">\n" + Rectangle(0, 0, width, height) + "</g>\n<g fill=\"black\">\n";
  for (std::size_t i = 0; i < bars.size(); ++i) svg += Bar(bars[i], kQuietBeside + static_cast<double>(i) * kPitch);
  return svg + "</g>\n</svg>\n";
}

void WriteWholeFile(const std::string& path, const std::string& contents)
{
  const std::filesystem::path file(path);
  std::error_code ignored;
  if (std::filesystem::exists(file, ignored) && !std::filesystem::is_regular_file(file, ignored)) {
    throw Failure("cannot write " + path + ": it is there and is no regular file");  // renaming would replace a device
  }
  const std::string directory = file.has_parent_path() ? file.parent_path().string() : ".";
  try {
    arf::OutputFile output(directory, file.filename().string());
    output.WriteAt(0, contents.data(), contents.size());
    output.Sync();
    output.Publish();
  } catch (const arf::BuildError& error) {
    throw Failure(std::string("cannot write ") + path + ": " + error.what());
  }
}

}  // namespace tool
