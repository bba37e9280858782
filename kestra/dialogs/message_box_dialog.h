#pragma once
#include <windows.h>

#include <cstdint>
#include <string>

#include <kestra/dialogs/message_box_layout.h>
#include <kestra/dialogs/message_box_rules.h>
#include <platform/cstring.h>
#include <platform/export.h>
#include <platform/window/dialog.h>

/// The extended message box: the style word of the system's (buttons, icon, default button, help) with extra
/// buttons, a count-down, and a check box by which the user asks not to be asked again. The answer is then
/// remembered in the profile of the host application (`CWinApp::WriteProfileInt`, section "MessageBoxes") and
/// returned at once by later boxes.
///
/// What differs from what a reader may expect:
/// - Escape and the close box answer with the set's escape button; sets without one ignore them;
/// - the answer is remembered under the help id, or else under a sum of the message (`rememberedName`): two
///   messages that differ in their first character only share an answer. The name is made once and kept, even
///   when the message changes afterwards;
/// - an answer that was remembered is returned as it was stored, whatever buttons this box has;
/// - without an application object nothing is remembered;
/// - the help button and F1 send WM_HELP to the owner, with the help id as its context; the box stays open;
/// - a message too high for the screen stands in a scrolled field; Ctrl+C copies title, message and buttons.
///
/// Button texts are string resources of the library, 32780 to 32795. Texts are Windows-1252, lines end in LF
/// or CR LF. A box may be shown again.
class KESTRA_API CMessageBoxDialog : public CDialog {
  public:
    /// A null parent stands for the program's active window; a title that is null or empty for the
    /// application's name.
    CMessageBoxDialog(CWnd* parent, const char* message, const char* title = nullptr, UINT style = 0,
                      UINT helpId = 0);
    /// Message and title as string resources of the host; one that is not there is empty.
    CMessageBoxDialog(CWnd* parent, UINT message, UINT title = 0, UINT style = 0, UINT helpId = 0);
    ~CMessageBoxDialog() override;

    static const CRuntimeClass runtimeClass;
    const CRuntimeClass* GetRuntimeClass() const override { return &runtimeClass; }

    void SetStyle(UINT style) { m_style = style; }
    UINT GetStyle() const { return m_style; }
    void SetMessage(const char* message) { m_message = message; }
    void SetMessage(UINT resource);
    const CString& GetMessage() const { return m_message; }
    void SetTitle(const char* title) { m_title = title; }
    void SetTitle(UINT resource);
    const CString& GetTitle() const { return m_title; }
    /// An icon of any size, not owned, in place of the style's; null: the style's. By number: an icon
    /// resource of the host.
    void SetMessageIcon(HICON icon) { m_icon = icon; }
    void SetMessageIcon(UINT resource);
    HICON GetMessageIcon() const { return m_icon; }
    /// A count-down in seconds, 0 for none. `disabled` 0: at its end the box answers with the default button;
    /// else the buttons, the check box, the close box and every key do nothing until its end.
    void SetTimeout(UINT seconds, int disabled = 0) { m_countDown.set(seconds, disabled); }
    /// Seconds left. They are not put back when the box is shown again.
    UINT GetTimeoutSeconds() const { return m_countDown.seconds(); }
    int GetTimeoutDisabled() const { return m_countDown.disabled(); }

    /// Returns a command id, or what was remembered; -1 when the box could not be shown, or when its window
    /// was destroyed (with its owner) before there was an answer.
    INT_PTR DoModal() override;
    /// Ends the box; remembers the result when the check box is there and checked. Nothing without a window.
    void EndDialog(int result) override;

    /// Forgets every remembered answer of the host application.
    static void ResetMessageBoxes();

    BOOL PreTranslateMessage(MSG* message) override;

    /// Section of the profile that holds the answers.
    static constexpr const char* profileSection = "MessageBoxes";
    static constexpr UINT_PTR timerId = 2201;

  protected:
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    const std::string& answerName();
    kestra::BoxExtents measure(HICON icon) const;
    void createControls(const kestra::BoxLayout& layout, HICON icon);
    void createScrolledMessage(const kestra::BoxPlace& place);
    HWND createControl(const char* windowClass, const char* text, DWORD style, int id,
                       const kestra::BoxPlace& place);
    void placeOnScreen(const kestra::BoxSize& client);
    void applyStyle();
    void startCountDown();
    void onTimer();
    void holdControls(bool held);
    void showCountDown();
    void focusDefault();
    void answer(int id);
    bool hasButton(int id) const;
    void askForHelp();
    void copyToClipboard();
    void drawMessage(const DRAWITEMSTRUCT& draw) const;

    std::uint32_t m_style;
    std::uint32_t m_helpId;
    HICON m_icon = nullptr;
    kestra::BoxCountDown m_countDown;
    UINT_PTR m_timer = 0;
    std::string m_answerName;
    kestra::BoxButtons m_buttons = {};
    CString m_message;
    CString m_title;
    bool m_answered = false;
};
