// Progress reports to the host's progress window.
#include "Pictrace.h"
#include "core/Progress.h"

void CPictrace::BeginProgress(int nKind) {
  m_fProgressPos = 0.0f;
  m_nProgressShown = 0;
  if (nKind == 0)
    m_fProgressTotal =
        PT_WEIGHT_NOISE + PT_WEIGHT_BLOCK + PT_WEIGHT_PYRAMID + PT_WEIGHT_CLUSTER + PT_WEIGHT_POLYGONS;
  else if (nKind == 1)
    m_fProgressTotal = PT_WEIGHT_BLOCK + PT_WEIGHT_PYRAMID + PT_WEIGHT_CLUSTER + PT_WEIGHT_POLYGONS;
  else
    m_fProgressTotal = PT_WEIGHT_CLUSTER + PT_WEIGHT_POLYGONS;
  if (m_pProgressWnd) {
    m_pProgressWnd->SendMessage(WM_PICTRACE_PROGRESS_BEGIN, 0, 0);
    m_pProgressWnd->SendMessage(WM_PICTRACE_PROGRESS_RANGE, 0, 100);
    m_pProgressWnd->SendMessage(WM_PICTRACE_PROGRESS_POS, 0, 0);
  }
}

// Steps under 5 percent are swallowed to limit the traffic to the window;
// a position that goes backwards is never sent.
void CPictrace::ShowProgress(int nPos) {
  if (m_pProgressWnd && nPos >= m_nProgressShown + 5) {
    m_nProgressShown = nPos;
    m_pProgressWnd->SendMessage(WM_PICTRACE_PROGRESS_POS, static_cast<WPARAM>(nPos), 0);
  }
}

void CPictrace::EndProgress() {
  if (m_pProgressWnd) m_pProgressWnd->SendMessage(WM_PICTRACE_PROGRESS_END, 1, 0);
}

pictrace::Progress CPictrace::JobProgress() {
  return pictrace::Progress(m_fProgressPos, m_fProgressTotal, [this](int nPos) { ShowProgress(nPos); });
}
