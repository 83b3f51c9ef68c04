#include <common/param_keys.h>
#include <common/public_method.h>
#include <common/zoom_modes.h>
#include <frame/operation/operation.h>
#include <tests/support/test_main.h>

#include <QStandardItemModel>
#include <QtTest>

namespace {

class AnyOperation : public G_Operation
{
public:
    G_Operation* Clone() const override { return new AnyOperation; }
    const char* Name() const override { return "t_any"; }
    bool DoAction() override { return true; }
};

} // namespace

// How a node is told to an operation, whose parameters hold numbers and texts only.
class TestTreeCodec : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        model.clear();
        for (int row = 0; row < 4; ++row)
            model.appendRow(new QStandardItem);
        model.item(2)->appendRow(new QStandardItem);
        model.item(2)->appendRow(new QStandardItem);
        model.item(2)->child(1)->appendRow(new QStandardItem);
    }

    void aTopLevelRowIsWrittenAsOneRowAndTheCountOne()
    {
        AnyOperation op;
        PublicMethod::AddIndexPath(model.index(3, 0), &op, "index");
        QCOMPARE(op.Params->GetInt32("index0", -1), 3);
        QCOMPARE(op.Params->GetInt32("indexCount", -1), 1);
        QCOMPARE(op.Params->Count(), 2);
    }

    void anInvalidIndexIsWrittenAsTheCountZero()
    {
        AnyOperation op;
        PublicMethod::AddIndexPath(QModelIndex(), &op, "index");
        QVERIFY(op.Params->Contains("indexCount"));
        QCOMPARE(op.Params->GetInt32("indexCount", -1), 0);
        QCOMPARE(op.Params->Count(), 1);
    }

    void theRowChainBeginsAtTheNodeAndEndsAtTheTopLevel()
    {
        AnyOperation op;
        const QModelIndex deep = model.item(2)->child(1)->child(0)->index();
        PublicMethod::AddIndexPath(deep, &op, "destIndex");
        QCOMPARE(op.Params->GetInt32("destIndex0", -1), 0);
        QCOMPARE(op.Params->GetInt32("destIndex1", -1), 1);
        QCOMPARE(op.Params->GetInt32("destIndex2", -1), 2);
        QCOMPARE(op.Params->GetInt32("destIndexCount", -1), 3);
        QCOMPARE(op.Params->Count(), 4);
    }

    void anEntryToDeleteCarriesItsChainAndItsRowOnTheScreen()
    {
        AnyOperation op;
        PublicMethod::AddBatchIndexPath(model.item(2)->child(1)->index(), &op, 3, 17, "Del", "index");
        QCOMPARE(op.Params->GetInt32("Del3index0", -1), 1);
        QCOMPARE(op.Params->GetInt32("Del3index1", -1), 2);
        QCOMPARE(op.Params->GetInt32("Del3indexCount", -1), 2);
        QCOMPARE(op.Params->GetInt32("Del3deleteCustomRow", -1), 17);
        QCOMPARE(op.Params->Count(), 4);
    }

    void anEntryToMoveCarriesNoRowOnTheScreen()
    {
        AnyOperation op;
        PublicMethod::AddBatchIndexPath(model.index(1, 0), &op, 0, 17, "Mov", "sourceIndex");
        QCOMPARE(op.Params->GetInt32("Mov0sourceIndex0", -1), 1);
        QCOMPARE(op.Params->GetInt32("Mov0sourceIndexCount", -1), 1);
        QVERIFY(!op.Params->Contains("Mov0deleteCustomRow"));
        QCOMPARE(op.Params->Count(), 2);
    }

    void onlyTheExactPrefixDelCarriesTheRowOnTheScreen()
    {
        AnyOperation op;
        PublicMethod::AddBatchIndexPath(model.index(1, 0), &op, 0, 17, "del", "index");
        QVERIFY(!op.Params->Contains("del0deleteCustomRow"));
    }

    void rowsAreSortedAscending()
    {
        QList<int> rows{4, 1, 2};
        PublicMethod::SortRows(rows);
        QCOMPARE(rows, (QList<int>{1, 2, 4}));
        QList<int> none;
        PublicMethod::SortRows(none);
        QVERIFY(none.isEmpty());
    }

    void aViewsZoomModeBecomesTheDestinations_data()
    {
        QTest::addColumn<int>("view");
        QTest::addColumn<int>("dest");
        QTest::newRow("plain") << 0 << 0;
        QTest::newRow("actual size") << 1 << 0;
        QTest::newRow("width") << 2 << 2;
        QTest::newRow("height") << 3 << 3;
        QTest::newRow("page") << 4 << 1;
        QTest::newRow("rectangle") << 5 << 4;
        QTest::newRow("unknown") << 6 << 0;
        QTest::newRow("negative") << -1 << 0;
    }

    void aViewsZoomModeBecomesTheDestinations()
    {
        QFETCH(int, view);
        QFETCH(int, dest);
        QCOMPARE(PublicMethod::DestZoomMode(view), dest);
    }

    void aDestinationsZoomModeBecomesTheViews_data()
    {
        QTest::addColumn<int>("dest");
        QTest::addColumn<int>("view");
        QTest::addColumn<bool>("fitsRectangle");
        QTest::newRow("plain") << 0 << 0 << false;
        QTest::newRow("page") << 1 << 4 << false;
        QTest::newRow("width") << 2 << 2 << false;
        QTest::newRow("height") << 3 << 3 << false;
        QTest::newRow("rectangle") << 4 << 5 << true;
        QTest::newRow("unknown") << 5 << 0 << false;
        QTest::newRow("negative") << -1 << 0 << false;
    }

    void aDestinationsZoomModeBecomesTheViews()
    {
        QFETCH(int, dest);
        QFETCH(int, view);
        QFETCH(bool, fitsRectangle);
        QCOMPARE(ViewZoomOf(dest).mode, view);
        QCOMPARE(ViewZoomOf(dest).fitsRectangle, fitsRectangle);
    }

private:
    QStandardItemModel model;
};

TETO_TEST_MAIN(TestTreeCodec)
#include "test_tree_codec.moc"
