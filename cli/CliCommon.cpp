#include <cmath>
#include <iostream>
#include <sstream>

#include "cli/Commands.h"
#include "cli/ImageFile.h"

namespace pictrace {
namespace cli {

int Fail(const std::string& message) {
  ErrorStream() << "pictrace: " << message << "\n";
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

CLI::Validator FiniteNumber(double lo, double hi) {
  std::ostringstream range;
  range << "expected a number ";
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
