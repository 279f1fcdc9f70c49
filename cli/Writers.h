// The output formats. A writer turns the output document into the bytes of
// one file; the engine comes along for writers that paint (the preview).
// Adding a format: one writer file defining its Format function, declared
// here and listed in OutputFormats(); both commands then offer its option.
#pragma once

#include <string>
#include <vector>

#include "cli/OutputDocument.h"

namespace pictrace {

std::string FormatSvg(const OutputDocument& doc, CPictrace& engine);   // SvgWriter.cpp
std::string FormatJson(const OutputDocument& doc, CPictrace& engine);  // JsonWriter.cpp
std::string FormatPng(const OutputDocument& doc, CPictrace& engine);   // PngWriter.cpp
std::string FormatReport(const OutputDocument& doc, CPictrace& engine);  // ReportWriter.cpp
// The SVG in the digitizer's dialect, which FormatSvg writes when
// doc.inkstitch is set (InkstitchWriter.cpp).
std::string FormatInkstitch(const OutputDocument& doc, CPictrace& engine);
// The root's width and height in mm and its view box in output units.
std::string SvgSize(const OutputDocument& doc);

struct OutputFormat {
  const char* name;         // for messages: "the SVG"
  const char* option;       // the command-line option naming the file
  const char* help;
  const char* defaultPath;  // "-" standard output, "" not written
  std::string (*format)(const OutputDocument& doc, CPictrace& engine);
  const char* extension;  // of the file named after the picture in a batch
};

inline const std::vector<OutputFormat>& OutputFormats() {
  static const std::vector<OutputFormat> formats = {
      {"SVG", "-o,--output", "SVG file to write (default: standard output)", "-", FormatSvg, ".svg"},
      {"JSON", "--json", "also write the result as JSON (docs/json-schema.md)", "", FormatJson, ".json"},
      {"PNG preview", "--preview", "also paint the result into a PNG", "", FormatPng, ".png"},
      {"design report", "--report",
       "also write an embroidery design report as JSON: size, threads, areas, estimated stitches, "
       "travel, warnings",
       "", FormatReport, ".report.json"},
  };
  return formats;
}

// One path per format, in the order of OutputFormats(). False, with a
// message, when two of them would go to standard output ("-").
bool CheckOutputPaths(const std::vector<std::string>& paths, std::string& error);

// Writes every format that has a path. On the first failure returns false
// with a message naming the file.
bool WriteOutputs(const OutputDocument& doc, CPictrace& engine, const std::vector<std::string>& paths,
                  std::string& error);

}  // namespace pictrace
