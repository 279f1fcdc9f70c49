// The pictures a command is given, and running it on each: one picture as
// always (outputs where its options say), or several with --out-dir, each in
// its own engine on its own thread, N at a time, with outputs named after
// the pictures and one progress bar over the batch.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

#include "Pictrace.h"

namespace pictrace {
namespace cli {

struct PictureSet {
  std::vector<std::string> inputs;
  std::string outDir;  // empty: one picture, outputs as named
  int jobs = 0;        // pictures at once; 0: one per core
  std::vector<CLI::Option*> formatOptions;  // one per OutputFormats() entry
};

// Registers the pictures, --out-dir and --jobs, and one option per output
// format (see Writers.h): outputs[i] is the path of OutputFormats()[i], "-"
// for standard output, empty for none. With --out-dir a format option takes
// no file name: it asks for that format beside the SVG.
void AddPictureOptions(CLI::App* app, PictureSet& set, std::vector<std::string>& outputs);

// One picture's run: its input, its output paths (as AddPictureOptions
// fills them) and the window its engine reports progress to. Returns the
// exit code of a single run.
using PictureRunner =
    std::function<int(const std::string& input, const std::vector<std::string>& outputs, CWnd& progress)>;

// Runs every picture of the set (label: "tracing") and returns the exit
// code: failure when any picture failed. In a batch each picture's messages
// and summary are printed together once it is done, so that pictures
// running at once do not mix their lines.
int RunPictures(const PictureSet& set, const std::vector<std::string>& outputs, const std::string& label,
                const PictureRunner& run);

}  // namespace cli
}  // namespace pictrace
