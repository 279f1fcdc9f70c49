// The subcommands of the pictrace command line. Each one lives in its own
// file and provides an Add...Command function; main.cpp lists them.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "Pictrace.h"
#include "cli/Length.h"
#include "cli/OutputDocument.h"

namespace pictrace {
namespace cli {

// A registered subcommand: the parser node and the work to run when the
// user chose it (returns the process exit code).
struct Command {
  CLI::App* app;
  std::function<int()> run;
};

Command AddInfoCommand(CLI::App& parent);
Command AddPreviewCommand(CLI::App& parent);
Command AddTraceCommand(CLI::App& parent);
Command AddLinesCommand(CLI::App& parent);

// Shared by the subcommands (CliCommon.cpp).

// Prints "pictrace: <message>" on standard error and returns the exit code
// for a failed run.
int Fail(const std::string& message);

// Where messages go: standard error, or the record of the picture this
// thread runs in a batch (BatchRun.h), printed once the picture is done.
std::ostream& ErrorStream();

// Reads a picture file and loads it into the engine; on failure prints a
// message naming the file and returns false. dib keeps the file's DIB.
bool LoadIntoEngine(CPictrace& engine, const std::string& path, std::vector<unsigned char>& dib);

// --max-pixels N: the pixel limit of the picture readers (ImageLimits.h).
// trace and lines get it with their picture options (BatchRun.h); info and
// preview add it.
void AddMaxPixelsOption(CLI::App* app);

// A number from lo to hi (hi infinite: lo or larger). NaN and infinities are
// refused like any other value out of range, with the option named.
CLI::Validator FiniteNumber(double lo, double hi);

// The size and embroidery options trace and lines share.
struct EmbroideryOptions {
  SizeRequest size;
  bool inkstitch = false;
  bool curves = false;
  bool noCurves = false;
  // Curves unless asked otherwise: by default only in the digitizer's dialect.
  bool Curves() const { return curves || (inkstitch && !noCurves); }
};
void AddEmbroideryOptions(CLI::App* app, EmbroideryOptions& options);

// Sets the engine's output rectangle from the size options once a picture is
// loaded; false (after a message) when they are wrong.
bool SetOutputSize(CPictrace& engine, const SizeRequest& size);

// For a digitizer the size asked for is the stitched design's (its pieces'
// extent once the background is left out), not the picture's: scales the
// engine's output rectangle so that the design gets it (one side keeps the
// proportions, both stretch). The shapes stay those traced at the picture's
// size, only mapped anew; true when the rectangle changed and the results
// are to be taken again.
bool FitDesign(CPictrace& engine, const OutputDocument& doc, const SizeRequest& size);
// The SVG page shrunk to the design's extent, rounded out to whole units.
void CropToDesign(OutputDocument& doc);

// With a design report among the outputs: its one-line summary on standard
// error.
void ReportSummary(const OutputDocument& doc, const std::vector<std::string>& outputs);

// Where a command's summary line goes: standard error, so that standard
// output carries only the outputs; in a batch, the picture's record.
std::ostream& SummaryStream();

// Exit code of a failed run.
constexpr int kExitFailure = 1;

}  // namespace cli
}  // namespace pictrace
