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

// Where messages go: standard error, or the record of the picture this
// thread runs in a batch (BatchRun.h), printed once the picture is done.
std::ostream& ErrorStream();

// Reads a picture file and loads it into the engine; on failure prints a
// message naming the file and returns false. dib keeps the file's DIB.
bool LoadIntoEngine(CPictrace& engine, const std::string& path, std::vector<unsigned char>& dib);

// A number from lo to hi (hi infinite: lo or larger). NaN and infinities are
// refused like any other value out of range, with the option named.
CLI::Validator FiniteNumber(double lo, double hi);

// Where a command's summary line goes: standard error when an output goes
// to standard output ("-"), so that it stays clean; standard output
// otherwise; in a batch, the picture's record.
std::ostream& SummaryStream(const std::vector<std::string>& outputs);

// Exit code of a failed run.
constexpr int kExitFailure = 1;

}  // namespace cli
}  // namespace pictrace
