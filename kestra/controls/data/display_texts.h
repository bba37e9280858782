#pragma once
#include <windows.h>

#include <kestra/controls/lra_list_ctrl.h>

/// How lists that hold no texts answer the platform's question for one. Private to this folder.
namespace controls {

/// Answers LVN_GETDISPINFO (in either form of text) with `GetValue`; false for any other notification.
bool answerDisplayText(CLraListCtrl& list, LPARAM notification);

}  // namespace controls
