#include "cli/ProgressBar.h"

#include <utility>

namespace pictrace {
namespace cli {

namespace {
const int kBarWidth = 30;
}

ProgressBarWnd::ProgressBarWnd(bool bEnabled, std::string label, std::FILE* out)
    : m_bEnabled(bEnabled), m_label(std::move(label)), m_out(out) {}

ProgressBarWnd::~ProgressBarWnd() {
  // A job cut short still leaves the terminal on a fresh line.
  if (m_bEnabled && m_bStarted && !m_bFinished) std::fputc('\n', m_out);
}

LRESULT ProgressBarWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PICTRACE_PROGRESS_BEGIN:
      m_bStarted = true;
      m_bFinished = false;
      m_nPos = 0;
      break;
    case WM_PICTRACE_PROGRESS_RANGE:
      if (lParam > 0) m_nRange = static_cast<int>(lParam);
      break;
    case WM_PICTRACE_PROGRESS_POS:
      m_nPos = static_cast<int>(wParam);
      Draw();
      break;
    case WM_PICTRACE_PROGRESS_END:
      m_nPos = m_nRange;
      Draw();
      if (m_bEnabled && !m_bFinished) std::fputc('\n', m_out);
      m_bFinished = true;
      m_bShown = false;
      break;
    default:
      break;
  }
  return 0;
}

void ProgressBarWnd::Hide() {
  if (!m_bShown) return;
  std::fprintf(m_out, "\r%*s\r", static_cast<int>(m_label.size()) + kBarWidth + 8, "");
  std::fflush(m_out);
  m_bShown = false;
}

void ProgressBarWnd::Draw() {
  if (!m_bEnabled) return;
  int pos = m_nPos < 0 ? 0 : (m_nPos > m_nRange ? m_nRange : m_nPos);
  int filled = pos * kBarWidth / m_nRange;
  std::string bar(static_cast<size_t>(filled), '#');
  bar.append(static_cast<size_t>(kBarWidth - filled), ' ');
  std::fprintf(m_out, "\r%s [%s] %3d%%", m_label.c_str(), bar.c_str(), pos * 100 / m_nRange);
  std::fflush(m_out);
  m_bShown = true;
}

}  // namespace cli
}  // namespace pictrace
