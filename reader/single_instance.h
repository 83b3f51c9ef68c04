#pragma once

#include <QLocalServer>
#include <QObject>
#include <QStringList>

// One window a user: a second start hands its files to the first and ends.
class SingleInstance : public QObject
{
    Q_OBJECT
public:
    // `name` tells apart users and test runs.
    explicit SingleInstance(const QString& name, QObject* parent = nullptr);
    // True when a first instance took the files; this process is then done.
    bool HandOver(const QStringList& absolutePaths);
    // Makes this the first instance. False when the socket cannot be made; the program then works alone.
    bool Listen();

signals:
    // Another start handed files over; may be empty, and then only the window is to come to the front.
    void FilesReceived(const QStringList& absolutePaths);

private:
    void Receive();
    QString name;
    QLocalServer server;
};
