#pragma once
// The kinds of message box that a model asks the page to show through its
// messageBox(int nMsgBoxType, QString strMsg) signal. The numbers are the
// ones the page's message box view takes; the signal carries them as int.

#include <QObject>

class MessageBoxType
{
    Q_GADGET

public:
    enum Type {
        Ask = 0,         // a question with "Yes" and "No"
        Warning = 1,
        Error = 2,
        Success = 3,
        Information = 4,
    };
    Q_ENUM(Type)
};
