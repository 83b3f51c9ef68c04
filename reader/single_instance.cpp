#include "single_instance.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalSocket>
#include <QTimer>

namespace {

constexpr int WaitMs = 1000;
constexpr int MostBytes = 1 << 20; // a longer list of files is no list of files

} // namespace

SingleInstance::SingleInstance(const QString& instanceName, QObject* parent)
    : QObject(parent)
    , name(instanceName)
{
    connect(&server, &QLocalServer::newConnection, this, &SingleInstance::Receive);
}

bool SingleInstance::HandOver(const QStringList& absolutePaths)
{
    QLocalSocket socket;
    socket.connectToServer(name);
    if (!socket.waitForConnected(WaitMs))
        return false;
    socket.write(QJsonDocument(QJsonArray::fromStringList(absolutePaths)).toJson(QJsonDocument::Compact) + '\n');
    return socket.waitForBytesWritten(WaitMs);
}

bool SingleInstance::Listen()
{
    server.setSocketOptions(QLocalServer::UserAccessOption);
    if (server.listen(name))
        return true;
    QLocalServer::removeServer(name); // left behind by a crash: nobody answered HandOver
    return server.listen(name);
}

void SingleInstance::Receive()
{
    QLocalSocket* socket = server.nextPendingConnection();
    connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    QTimer::singleShot(10 * WaitMs, socket, &QLocalSocket::abort);
    connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
        if (socket->bytesAvailable() > MostBytes) {
            socket->abort();
            return;
        }
        if (!socket->canReadLine())
            return;
        QStringList paths;
        const QJsonArray values = QJsonDocument::fromJson(socket->readLine()).array();
        for (const QJsonValue& value : values) {
            if (value.isString())
                paths << value.toString();
        }
        socket->disconnectFromServer();
        emit FilesReceived(paths);
    });
}
