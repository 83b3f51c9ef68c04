#pragma once

#include "event_probe.h"
#include "host_doubles.h"
#include "view_fixture.h"

#include <QByteArray>
#include <QList>
#include <QObject>

#include <memory>

// Operations and a document without a pane; what is logged is kept, and so are the events of the open document.
class OperationsFixtureBase : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();

protected:
    // The text form of MemoryDocument; what was open before is closed.
    void Open(const QString& text);
    // Was a line logged that begins so?
    bool WasLogged(const QByteArray& start) const;

    virtual void MakeOperations() = 0;
    virtual void DeleteOperations() = 0;

    QList<QByteArray> lines; // logged since the test began
    std::unique_ptr<DeskNavigation> navigation;
    std::unique_ptr<ViewFixture> fixture;
    std::unique_ptr<EventProbe> probe;
};

// The operations are registered by the constructor of Operations.
template <typename Operations>
class OperationsFixture : public OperationsFixtureBase
{
protected:
    void MakeOperations() override { operations = std::make_unique<Operations>(); }
    void DeleteOperations() override { operations.reset(); }

    std::unique_ptr<Operations> operations;
};
