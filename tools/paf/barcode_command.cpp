#include <array>
#include <iostream>
#include <memory>

#include "arf/barcode/four_state.h"
#include "barcode_svg.h"
#include "command.h"
#include "exit_code.h"
#include "json.h"
#include "qxpaf/paf.h"
#include "session.h"

namespace tool {
namespace {

constexpr const char* kAutomatic = "auto";

struct BarcodeOptions
{
  std::string dpid;
  std::string format = "11";
  std::string customer;
  std::string encoding = kAutomatic;
  std::string svg;
  bool json = false;
};

arf::CustomerEncoding EncodingOf(const std::string& name)
{
  return name == "n"   ? arf::CustomerEncoding::Numeric
         : name == "c" ? arf::CustomerEncoding::Text
                       : arf::CustomerEncoding::Automatic;
}

arf::FourStateRequest RequestOf(const BarcodeOptions& options)
{
  return {options.dpid, options.format, options.customer, EncodingOf(options.encoding)};
}

/** Judges the options, whose faults the library would answer with a bare status. */
void Check(const arf::FourStateRequest& request)
{
  arf::FourStateBars bars;
  const arf::FourStateFault fault = arf::EncodeFourState(request, bars);
  if (fault == arf::FourStateFault::None) return;
  std::array<char, 512> text{};
  arf::BoundedText sentence(text.data(), static_cast<int>(text.size()));
  arf::DescribeFault(fault, request, sentence);
  throw Failure(text.data());
}

std::string WholeDpid(const std::string& dpid)
{
  return std::string(arf::kDpidDigits - dpid.size(), '0') + dpid;
}

std::string AskLibrary(const BarcodeOptions& options)
{
  std::array<char, arf::kMaxFourStateBars + 1> bars{};
  const int status = pafBuildBarcode_(options.format.c_str(), WholeDpid(options.dpid).c_str(), options.customer.c_str(),
                                      arf::IsNumeric(RequestOf(options)) ? 1 : 0, bars.data(), nullptr);
  if (status == 0) return bars.data();
  std::array<char, 256> description{};
  pafGetErrorDescription(description.data(), status, static_cast<int>(description.size()));
  throw Failure("the library makes no barcode: " + StatusText({status, "", description.data()}) +
                "\npaf doctor shows whether the Australian plug-in loads.");
}

void Print(const BarcodeOptions& options, const std::string& bars)
{
  if (!options.json) {
    std::cout << bars << '\n';
    return;
  }
  const bool isNumeric = arf::IsNumeric(RequestOf(options));
  const Json object = {{"dpid", WholeDpid(options.dpid)},
                       {"fcc", options.format},
                       {"customer", options.customer},
                       {"encoding", options.customer.empty() ? ""
                                    : isNumeric              ? "n"
                                                             : "c"},
                       {"bars", bars},
                       {"length", bars.size()}};
  std::cout << ToText(object) << '\n';
}

int Run(const BarcodeOptions& options)
{
  Check(RequestOf(options));
  const std::string bars = AskLibrary(options);
  if (!options.svg.empty()) {
    WriteWholeFile(options.svg, BarcodeSvg(bars, "4-state barcode " + options.format + " " + WholeDpid(options.dpid)));
  }
  Print(options, bars);
  return kExitFound;
}

}  // namespace

Command AddBarcodeCommand(CLI::App& program)
{
  auto options = std::make_shared<BarcodeOptions>();
  CLI::App* app = program.add_subcommand("barcode", "Make the 4-state customer barcode of a DPID");
  app->add_option("dpid", options->dpid, "DPID: up to eight digits")->option_text("DPID")->required();
  app->add_option("--fcc", options->format,
                  "Format control code: 11 standard (unless given), 45 reply paid, 59 customer barcode 2,\n"
                  "62 customer barcode 3, 87 routing, 92 redirection")
      ->option_text("CODE");
  app->add_option("--customer", options->customer, "Customer information, for the formats 59 and 62")
      ->option_text("TEXT");
  app->add_option("--encoding", options->encoding,
                  "How customer information is written: n (digits), c (letters, digits, space, #),\n"
                  "or auto (unless given): n for digits alone, otherwise c")
      ->option_text("auto|n|c")
      ->transform(CLI::IsMember({kAutomatic, "n", "c"}, CLI::ignore_case));
  app->add_option("--svg", options->svg, "Draw the barcode into an SVG file too, to scale, in millimetres")
      ->option_text("FILE");
  AddJsonOption(*app, options->json);
  app->footer(
      "Prints the bars: 0 full, 1 ascender, 2 descender, 3 tracker.\n"
      "Only the post office's own DPIDs may be printed on mail.");
  return {app, [options] { return Run(*options); }};
}

}  // namespace tool
