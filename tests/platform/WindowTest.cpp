// Message boxes through the hook or standard error, and window messages to a
// subclassed CWnd.
#include <gtest/gtest.h>

#include <string>

#include "AfxWnd.h"

namespace {

std::string g_text;
UINT g_type = 0;
UINT g_helpId = 0;

int RecordingHook(const char* text, UINT type, UINT helpId) {
  g_text = text;
  g_type = type;
  g_helpId = helpId;
  return IDCANCEL;
}

class ProgressWindow : public CWnd {
 public:
  LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    m_log.push_back({message, wParam, lParam});
    return 42;
  }
  struct Msg {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
  };
  std::vector<Msg> m_log;
};

}  // namespace

TEST(MessageBox, HookReceivesTheCall) {
  AFX_MSGBOX_HOOK old = AfxSetMessageBoxHook(RecordingHook);
  EXPECT_EQ(AfxMessageBox("Disk full", MB_OKCANCEL, 17), IDCANCEL);
  EXPECT_EQ(g_text, "Disk full");
  EXPECT_EQ(g_type, static_cast<UINT>(MB_OKCANCEL));
  EXPECT_EQ(g_helpId, 17u);
  EXPECT_EQ(AfxMessageBox("Second"), IDCANCEL);
  EXPECT_EQ(g_type, static_cast<UINT>(MB_OK));
  EXPECT_EQ(g_helpId, 0u);
  EXPECT_EQ(AfxSetMessageBoxHook(old), RecordingHook);
}

TEST(MessageBox, WithoutHookWritesStandardError) {
  AFX_MSGBOX_HOOK old = AfxSetMessageBoxHook(nullptr);
  testing::internal::CaptureStderr();
  int result = AfxMessageBox("This type of bitmap is not supported");
  std::string err = testing::internal::GetCapturedStderr();
  AfxSetMessageBoxHook(old);
  EXPECT_EQ(result, IDOK);
  EXPECT_EQ(err, "This type of bitmap is not supported\n");
}

TEST(Window, SendMessageReachesSubclass) {
  ProgressWindow wnd;
  CWnd* base = &wnd;
  EXPECT_EQ(base->SendMessage(0x1403, 55, -3), 42);
  ASSERT_EQ(wnd.m_log.size(), 1u);
  EXPECT_EQ(wnd.m_log[0].message, 0x1403u);
  EXPECT_EQ(wnd.m_log[0].wParam, 55u);
  EXPECT_EQ(wnd.m_log[0].lParam, -3);
  CWnd plain;
  EXPECT_EQ(plain.SendMessage(0x1401), 0);
}

TEST(Window, ApplicationObject) {
  {
    CWinApp app("host");
    EXPECT_EQ(AfxGetApp(), &app);
    EXPECT_TRUE(app.InitInstance());
  }
  EXPECT_EQ(AfxGetApp(), nullptr);
}
