// A text progress bar on standard error, driven by the engine's progress
// messages: the engine sees an ordinary progress window.
#pragma once

#include <cstdio>
#include <string>

#include "Pictrace.h"

namespace pictrace {
namespace cli {

class ProgressBarWnd : public CWnd {
 public:
  // Draws only when enabled (the command line enables it when standard
  // error is a terminal).
  ProgressBarWnd(bool bEnabled, std::string label, std::FILE* out = stderr);
  ~ProgressBarWnd() override;
  LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) override;

  // Clears the bar's line, so that other lines can be printed; the next
  // position redraws it.
  void Hide();

  int Position() const { return m_nPos; }
  bool Finished() const { return m_bFinished; }

 private:
  void Draw();

  bool m_bEnabled;
  std::string m_label;
  std::FILE* m_out;
  int m_nRange = 100;
  int m_nPos = 0;
  bool m_bStarted = false;
  bool m_bFinished = false;
  bool m_bShown = false;  // the bar is on the terminal's current line
};

}  // namespace cli
}  // namespace pictrace
