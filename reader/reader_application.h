#pragma once

#include <QApplication>

// The reader's application. Memory that runs out on the main thread ends what was being done there, not the program:
// what else is open, perhaps with edits that nobody has saved yet, goes on.
class ReaderApplication : public QApplication
{
    Q_OBJECT
public:
    using QApplication::QApplication;
    bool notify(QObject* receiver, QEvent* event) override;
    // Says so over the reader's windows.
    static void TellOfShortage();
};
