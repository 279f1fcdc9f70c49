// Progress of a job as the host sees it: a position in percent that each
// stage advances by its share of the job's total weight, shown through a
// callback (the engine's ShowProgress, which throttles what reaches the
// window). A default-constructed Progress reports nothing.
#pragma once

#include <functional>

namespace pictrace {

// Truncation of a progress position; out-of-range values give 0.
inline int TruncProgress(double v) {
  if (!(v >= 0.0 && v < 2147483648.0)) return 0;
  return static_cast<int>(v);
}

class Progress {
 public:
  Progress() = default;
  Progress(float& position, const float& total, std::function<void(int)> show)
      : m_pPosition(&position), m_pTotal(&total), m_show(std::move(show)) {}

  // Percent of the job that a stage of this weight covers.
  double Span(float weight) const {
    return m_pTotal ? static_cast<double>(weight) / *m_pTotal * 100.0 : 0.0;
  }

  // Shows the position plus an offset into the running stage.
  void ShowAt(double offset) const {
    if (m_pPosition && m_show) m_show(TruncProgress(*m_pPosition + offset));
  }

  // Ends a stage: the position moves on by the stage's span (stored in
  // float) and is shown with a tenth added, so that float rounding just
  // under a whole percent does not hold the shown value back.
  void EndStage(float weight) {
    if (!m_pPosition) return;
    *m_pPosition = static_cast<float>(*m_pPosition + Span(weight));
    ShowAt(0.1);
  }

 private:
  float* m_pPosition = nullptr;
  const float* m_pTotal = nullptr;
  std::function<void(int)> m_show;
};

}  // namespace pictrace
