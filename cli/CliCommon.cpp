#include <cmath>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "cli/Commands.h"
#include "cli/ImageFile.h"
#include "cli/ImageLimits.h"
#include "cli/Writers.h"

namespace pictrace {
namespace cli {

int Fail(const std::string& message) {
  std::cerr << "pictrace: " << message << "\n";
  return kExitFailure;
}

bool LoadIntoEngine(CPictrace& engine, const std::string& path, std::vector<unsigned char>& dib) {
  std::string error;
  if (!LoadImageFile(path, dib, error)) {
    Fail(error);
    return false;
  }
  // The engine explains a refusal itself through the message box hook.
  if (!engine.SetDIBData(dib.data())) {
    Fail(path + ": the engine refused the picture");
    return false;
  }
  return true;
}

void AddPictureAndOutputOptions(CLI::App* app, std::string& input, std::vector<std::string>& outputs) {
  app->add_option("file", input, "PNG, JPEG or BMP picture")->required();
  const std::vector<OutputFormat>& formats = OutputFormats();
  outputs.resize(formats.size());
  for (size_t i = 0; i < formats.size(); i++) {
    outputs[i] = formats[i].defaultPath;
    app->add_option(formats[i].option, outputs[i], formats[i].help);
  }
  AddMaxPixelsOption(app);
}

void AddMaxPixelsOption(CLI::App* app) {
  const std::string help = "refuse pictures of more than N pixels (default: what a trace can hold in the "
                           "memory available, here " + std::to_string(MaxImagePixels()) + ")";
  app->add_option_function<double>(
         "--max-pixels", [](const double& n) { SetMaxImagePixels(static_cast<std::uint64_t>(n)); }, help)
      ->check(FiniteNumber(1, static_cast<double>(kMaxPixelsEver)))
      ->type_name("N");
}

CLI::Validator FiniteNumber(double lo, double hi) {
  std::ostringstream range;
  range << std::setprecision(12) << "expected a number ";
  if (std::isinf(hi))
    range << lo << " or larger";
  else
    range << "from " << lo << " to " << hi;
  return CLI::Validator(
      [lo, hi, wanted = range.str()](std::string& text) {
        double v = 0;
        const bool ok = CLI::detail::lexical_cast(text, v) && std::isfinite(v) && v >= lo && v <= hi;
        return ok ? std::string() : wanted + ", not " + text;
      },
      "NUMBER");
}

}  // namespace cli
}  // namespace pictrace
