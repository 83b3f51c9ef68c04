#pragma once

#include "outline_desk.h"

#include <frame/base/log.h>
#include <frame/operation/event_manager.h>
#include <frame/operation/operation.h>
#include <outline/outline_tree.h>
#include <tests/support/event_probe.h>

#include <QTextEdit>
#include <QtTest>

#include <memory>

using Rows = QList<int>;

// Looks at an operation just ahead of its work, and can refuse it.
class Onlooker : public G_OperationInterceptor
{
public:
    explicit Onlooker(const char* name)
        : name(name)
    {
    }
    bool OperationFilter(G_Operation* op) override { return OperationNameMatches(op, name); }
    bool BeforeDoActionHandle(G_Operation* op) override
    {
        json = op->Params->GetQString("jsonParam");
        title = op->Params->GetQString("title");
        pageId = op->Params->GetQString("pageId");
        nodeIdx = op->Params->GetInt32("nodeIdx", -7);
        marks = 0;
        while (op->Params->GetBool("node" + QByteArray::number(marks)))
            ++marks;
        ++seen;
        return !refuses;
    }
    const char* name;
    QString json;
    QString title;
    QString pageId;
    int nodeIdx = -7;
    int marks = 0; // "node0", "node1", ... that are true
    int seen = 0;
    bool refuses = false;
};

// A pane with all that stands around it, and what is fired.
class OutlineInterceptorsFixture : public QObject
{
    Q_OBJECT
private slots:
    void init() { Open(SmallOutline()); }

    void cleanup()
    {
        probe.reset();
        desk.reset();
        SetFrameLogListener({});
    }

protected:
    void Open(const QString& text)
    {
        probe.reset();
        desk.reset();
        desk = std::make_unique<OutlineDesk>(text);
        tab = desk->First();
        probe = std::make_unique<EventProbe>(desk->Context()->EventMgr());
    }

    void Press(Qt::Key key)
    {
        if (QTextEdit* editor = tab->Editor())
            QTest::keyClick(editor, key);
    }

    // As a click elsewhere does; the switch of documents may have done it before.
    void EndEditByFocus()
    {
        if (tab->Editor())
            tab->Tree()->setFocus();
    }

    void BeginEdit(const QString& title)
    {
        tab->MakeCurrent(title);
        emit tab->Tree()->itemDoubleClicked(tab->Item(title), 0);
        QVERIFY(tab->Editor());
    }

    std::unique_ptr<OutlineDesk> desk;
    std::unique_ptr<EventProbe> probe;
    OutlineTab* tab = nullptr;
};
