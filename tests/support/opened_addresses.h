// Keeps addresses that would have been opened outside of the program.
#pragma once

#include <frame/utils/safe_process.h>

#include <QStringList>
#include <QUrl>

// While it lives nothing is opened: each address asked for is kept instead.
class Opened
{
public:
    Opened()
    {
        Utils::Safe::OV_SafeProcess::SetOpener([this](const QUrl& url) {
            urls.append(url.toString());
            return true;
        });
    }
    ~Opened() { Utils::Safe::OV_SafeProcess::SetOpener({}); }
    Q_DISABLE_COPY(Opened)

    QStringList urls;
};
