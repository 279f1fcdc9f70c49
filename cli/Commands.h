// The subcommands of the pictrace command line. Each one lives in its own
// file and provides an Add...Command function; main.cpp lists them.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "Pictrace.h"

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

// Reads a picture file and loads it into the engine; on failure prints a
// message naming the file and returns false. dib keeps the file's DIB.
bool LoadIntoEngine(CPictrace& engine, const std::string& path, std::vector<unsigned char>& dib);

// Registers the picture argument and one option per output format (see
// Writers.h), which trace and lines share: outputs[i] is the path of
// OutputFormats()[i], "-" for standard output, empty for none. Adds
// --max-pixels too.
void AddPictureAndOutputOptions(CLI::App* app, std::string& input, std::vector<std::string>& outputs);

// --max-pixels N: the pixel limit of the picture readers (ImageLimits.h).
// trace and lines get it with the options above; info and preview add it.
void AddMaxPixelsOption(CLI::App* app);

// A number from lo to hi (hi infinite: lo or larger). NaN and infinities are
// refused like any other value out of range, with the option named.
CLI::Validator FiniteNumber(double lo, double hi);

// Exit code of a failed run.
constexpr int kExitFailure = 1;

}  // namespace cli
}  // namespace pictrace
