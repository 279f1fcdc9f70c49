// The progress protocol as the host's window sees it, message by message.
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "engine/EngineTestSupport.h"

namespace {

using Message = std::tuple<UINT, WPARAM, LPARAM>;

class RecordingWnd : public CWnd {
 public:
  LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    messages.emplace_back(message, wParam, lParam);
    return 0;
  }
  std::vector<Message> messages;
};

const std::vector<Message> kBeginMessages = {
    Message{0x1401, 0, 0}, Message{0x1402, 0, 100}, Message{0x1403, 0, 0}};

TEST(ProgressTest, BeginSetsTheJobTotalAndAnnouncesTheJob) {
  struct Case {
    int kind;
    float total;
  } cases[] = {{0, 100.0f}, {1, 80.0f}, {7, 40.0f}, {2, 40.0f}, {-1, 40.0f}};
  for (const Case& c : cases) {
    enginetest::TestEngine engine;
    RecordingWnd wnd;
    engine.m_pProgressWnd = &wnd;
    engine.m_fProgressPos = 33.0f;
    engine.m_nProgressShown = 50;
    engine.BeginProgress(c.kind);
    EXPECT_EQ(engine.m_fProgressTotal, c.total) << "kind " << c.kind;
    EXPECT_EQ(engine.m_fProgressPos, 0.0f);
    EXPECT_EQ(engine.m_nProgressShown, 0);
    EXPECT_EQ(wnd.messages, kBeginMessages) << "kind " << c.kind;
  }
}

TEST(ProgressTest, SmallStepsAreSwallowedAndBackwardStepsNeverSent) {
  enginetest::TestEngine engine;
  RecordingWnd wnd;
  engine.m_pProgressWnd = &wnd;
  engine.BeginProgress(0);
  wnd.messages.clear();

  engine.ShowProgress(3);
  EXPECT_TRUE(wnd.messages.empty());
  engine.ShowProgress(5);
  ASSERT_EQ(wnd.messages.size(), 1u);
  EXPECT_EQ(wnd.messages[0], (Message{0x1403, 5, 0}));
  EXPECT_EQ(engine.m_nProgressShown, 5);

  engine.ShowProgress(9);  // only 4 past the last one sent
  engine.ShowProgress(2);  // backwards
  EXPECT_EQ(wnd.messages.size(), 1u);
  engine.ShowProgress(10);
  ASSERT_EQ(wnd.messages.size(), 2u);
  EXPECT_EQ(wnd.messages[1], (Message{0x1403, 10, 0}));
}

TEST(ProgressTest, EndSendsFinishedAndKeepsTheCounters) {
  enginetest::TestEngine engine;
  RecordingWnd wnd;
  engine.m_pProgressWnd = &wnd;
  engine.BeginProgress(1);
  engine.ShowProgress(40);
  engine.m_fProgressPos = 40.0f;
  wnd.messages.clear();
  engine.EndProgress();
  ASSERT_EQ(wnd.messages.size(), 1u);
  EXPECT_EQ(wnd.messages[0], (Message{0x1404, 1, 0}));
  EXPECT_EQ(engine.m_nProgressShown, 40);
  EXPECT_EQ(engine.m_fProgressPos, 40.0f);
  EXPECT_EQ(engine.m_fProgressTotal, 80.0f);
}

TEST(ProgressTest, WithoutAWindowNothingIsSentButTheCountersMove) {
  enginetest::TestEngine engine;
  engine.BeginProgress(1);
  EXPECT_EQ(engine.m_fProgressTotal, 80.0f);
  engine.ShowProgress(50);
  EXPECT_EQ(engine.m_nProgressShown, 0);  // stored only when sent
  engine.EndProgress();
}

}  // namespace
