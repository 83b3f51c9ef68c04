#include "reader_desk.h"

#include <tests/support/test_main.h>

#include <frame/operation/registry.h>
#include <frame/view/context_menu.h>

#include <QtTest>

// The context menus that the reader gives the panes.
class TestReaderMenus : public QObject
{
    Q_OBJECT

private slots:
    void everyMenuEntryIsARegisteredOperationAndNoneStandsTwice_data() { AddMenus(); }

    void everyMenuEntryIsARegisteredOperationAndNoneStandsTwice()
    {
        QFETCH(QString, tool);
        ReaderDesk desk;
        const QStringList operations = Operations(desk, tool);
        QVERIFY(!operations.isEmpty());
        QCOMPARE(QSet<QString>(operations.cbegin(), operations.cend()).size(), operations.size());
        for (const QString& operation : operations)
            QVERIFY2(G_OperationRegistry::Instance().Find(operation.toUtf8()), qPrintable(operation));
    }

    void everyMenuEntryHasATextOfItsOwn_data() { AddMenus(); }

    void everyMenuEntryHasATextOfItsOwn()
    {
        QFETCH(QString, tool);
        ReaderDesk desk;
        QSet<QByteArray> texts;
        int count = 0;
        for (const G_MenuEntry& entry : desk.Context()->ContextMenu()->Entries(tool)) {
            if (entry.operation.isEmpty())
                continue;
            texts.insert(entry.text);
            ++count;
        }
        QVERIFY(!texts.contains(QByteArray()));
        QCOMPARE(texts.size(), count);
    }

    void theOutlinesMenuHasEveryOperationOfThePane()
    {
        ReaderDesk desk;
        QStringList expected;
        for (const QString& name : G_OperationRegistry::Instance().Names()) {
            if (name.startsWith("d_outline_"))
                expected.append(name);
        }
        QCOMPARE(expected.size(), 10);
        QStringList offered = Operations(desk, "vn_outline");
        offered.sort();
        expected.sort();
        QCOMPARE(offered, expected);
    }

private:
    static void AddMenus()
    {
        QTest::addColumn<QString>("tool");
        QTest::newRow("bookmarks") << QStringLiteral("vn_bookmark");
        QTest::newRow("outline") << QStringLiteral("vn_outline");
        QTest::newRow("page, hand") << QStringLiteral("t_handtool");
        QTest::newRow("page, text") << QStringLiteral("t_textselect");
    }

    static QStringList Operations(const ReaderDesk& desk, const QString& tool)
    {
        QStringList operations;
        for (const G_MenuEntry& entry : desk.Context()->ContextMenu()->Entries(tool)) {
            if (!entry.operation.isEmpty())
                operations.append(QString::fromUtf8(entry.operation));
        }
        return operations;
    }
};

TETO_TEST_MAIN(TestReaderMenus)
#include "test_reader_menus.moc"
