// pictrace info FILE: the size and colour depth of a picture file and of the
// image the engine holds after loading it.
#include <cstring>
#include <iostream>
#include <memory>

#include "cli/Commands.h"

namespace pictrace {
namespace cli {

namespace {

void PrintHeader(const char* label, const BITMAPINFOHEADER& h) {
  std::cout << label << h.biWidth << " x " << h.biHeight << " pixels, " << h.biBitCount << " bits per pixel";
  if (h.biBitCount <= 8) std::cout << " (" << (h.biClrUsed ? h.biClrUsed : 1u << h.biBitCount) << " colours)";
  std::cout << "\n";
}

}  // namespace

Command AddInfoCommand(CLI::App& parent) {
  auto file = std::make_shared<std::string>();
  CLI::App* app = parent.add_subcommand("info", "Print the size and colour depth of a picture");
  app->add_option("file", *file, "PNG, JPEG or BMP picture")->required();
  AddMaxPixelsOption(app);
  return {app, [file]() {
            CPictrace engine;
            std::vector<unsigned char> dib;
            if (!LoadIntoEngine(engine, *file, dib)) return kExitFailure;
            BITMAPINFOHEADER fileHeader;
            std::memcpy(&fileHeader, dib.data(), sizeof fileHeader);
            std::cout << "file: " << *file << "\n";
            PrintHeader("file image: ", fileHeader);
            PrintHeader("loaded image: ", *engine.GetBmpInfoHeader());
            return 0;
          }};
}

}  // namespace cli
}  // namespace pictrace
