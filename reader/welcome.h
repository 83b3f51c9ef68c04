#pragma once

#include <QStringList>
#include <QWidget>

class QVBoxLayout;

// What the window shows without a document: how to open one, and the documents opened last.
class Welcome : public QWidget
{
    Q_OBJECT
public:
    explicit Welcome(QWidget* parent);
    // At most five of them, newest first; those that are not there any more are left out.
    void ShowRecent(const QStringList& paths);

signals:
    void OpenRequested();
    void FileRequested(const QString& path);

private:
    QWidget* recent; // owned by this
    QVBoxLayout* recentColumn;
};
