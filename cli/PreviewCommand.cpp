// pictrace preview FILE -o out.png [--width W --height H]: paints the loaded
// image as the engine draws it into a window and saves that as a PNG.
#include <iostream>
#include <memory>

#include "RasterDC.h"
#include "cli/Commands.h"
#include "cli/ImageFile.h"
#include "cli/ImageLimits.h"

namespace pictrace {
namespace cli {

namespace {

struct PreviewOptions {
  std::string file;
  std::string output;
  int width = 0;   // 0: the image's own size
  int height = 0;
};

int RunPreview(const PreviewOptions& o) {
  CPictrace engine;
  std::vector<unsigned char> dib;
  if (!LoadIntoEngine(engine, o.file, dib)) return kExitFailure;
  CSize size;
  engine.GetDIBSize(size);
  int width = o.width > 0 ? o.width : size.cx;
  int height = o.height > 0 ? o.height : size.cy;
  // The preview's pixels are held whole too, so the picture's limit bounds them.
  if (static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) > MaxImagePixels())
    return Fail("--width " + std::to_string(width) + " --height " + std::to_string(height) + ": more than the limit of " +
                std::to_string(MaxImagePixels()) + " pixels; --max-pixels N changes the limit");
  CRasterDC dc(width, height);
  RECT dest{0, 0, width, height};
  if (!engine.DrawDIB(&dc, &dest, FALSE)) return Fail(o.file + ": the picture could not be painted");
  std::string error;
  if (!WritePng(o.output, dc.GetBits(), width, height, dc.GetStride(), error)) return Fail(error);
  std::cerr << "preview: " << o.output << " (" << width << " x " << height << ")\n";
  return 0;
}

}  // namespace

Command AddPreviewCommand(CLI::App& parent) {
  auto o = std::make_shared<PreviewOptions>();
  CLI::App* app = parent.add_subcommand("preview", "Paint the loaded picture into a PNG");
  app->add_option("file", o->file, "PNG, JPEG or BMP picture")->required();
  app->add_option("-o,--output", o->output, "PNG file to write")->required();
  AddMaxPixelsOption(app);
  app->add_option("--width", o->width, "width of the preview (default: the picture's)")
      ->check(CLI::Range(1, 32767));
  app->add_option("--height", o->height, "height of the preview (default: the picture's)")
      ->check(CLI::Range(1, 32767));
  return {app, [o]() { return RunPreview(*o); }};
}

}  // namespace cli
}  // namespace pictrace
