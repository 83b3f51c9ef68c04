#include <frame/base/converters.h>
#include <tests/support/test_main.h>

#include <QtTest>

#include <cwchar>

class TestBaseValues : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyStringHasAReadableBuffer();
    void aStringKeepsItsBytesAndCompares();
    void wideAndUtf8TextsConvertBothWays();
    void aNullTextBecomesTheEmptyText();
    void allocatedWideTextsHoldTheWholeText();
    void localTextsAreMadeOnRequest();
    void aRectangleKnowsItsMeasures();
    void rectanglesConvertBothWays();
    void aMatrixAppliesItsPartsInOrder();
    void aPathBecomesAPainterPath();
    void anUnfinishedCurveDrawsNothing();
    void numbersAreReadUpToTheFirstThatIsNone_data();
    void numbersAreReadUpToTheFirstThatIsNone();
    void aLengthCutsTheTextOfNumbers();
    void aLockedArrayAnswersDefaultsOutOfRange();
};

void TestBaseValues::anEmptyStringHasAReadableBuffer()
{
    const CCA_String empty;
    QVERIFY(empty.IsEmpty());
    QVERIFY(empty.GetBuffer());
    QCOMPARE(empty.GetBuffer()[0], '\0');
    const CCA_String fromNull(static_cast<const char*>(nullptr));
    QVERIFY(fromNull.IsEmpty());
    QCOMPARE(static_cast<const char*>(fromNull)[0], '\0');
}

void TestBaseValues::aStringKeepsItsBytesAndCompares()
{
    CCA_String text("abc", 2);
    QCOMPARE(text.GetLength(), 2);
    text += "d";
    QVERIFY(text == "abd");
    QVERIFY(text != "abe");
    QVERIFY(text == CCA_String("abd"));
    QVERIFY(CCA_String("a") < CCA_String("b"));
    QVERIFY(CCA_String("a") + CCA_String("b") == "ab");
}

void TestBaseValues::wideAndUtf8TextsConvertBothWays()
{
    const CCA_WString wide = CCA_StringConverter::utf8_to_unicode("\xE5\x8F\x91\xF0\x9F\x98\x80");
    QCOMPARE(wide.ToQString(), QString::fromUtf8("\xE5\x8F\x91\xF0\x9F\x98\x80"));
    QVERIFY(CCA_StringConverter::unicode_to_utf8(L"\u53D1\U0001F600") == "\xE5\x8F\x91\xF0\x9F\x98\x80");
    QVERIFY(CCA_StringConverter::unicode_to_utf8(L"abc", 2) == "ab");
    QVERIFY(CCA_StringConverter::utf8_to_unicode("abc", 2) == CCA_WString(L"ab"));
    QCOMPARE(GQ_ToQString(wide), wide.ToQString());
}

void TestBaseValues::aNullTextBecomesTheEmptyText()
{
    QVERIFY(CCA_StringConverter::unicode_to_utf8(nullptr).IsEmpty());
    QVERIFY(CCA_StringConverter::utf8_to_unicode(nullptr).IsEmpty());
    QVERIFY(CCA_WString(static_cast<const wchar_t*>(nullptr)).IsEmpty());
}

void TestBaseValues::allocatedWideTextsHoldTheWholeText()
{
    const QString text = QString::fromUtf8("a\xF0\x9F\x98\x80z");
    wchar_t* wide = CCA_AllocWide(text);
    QCOMPARE(std::wcslen(wide), size_t(3));
    QCOMPARE(QString::fromWCharArray(wide), text);
    CCA_FreeWide(wide);
    CCA_FreeWide(nullptr);
    wide = CCA_AllocWide(QString());
    QCOMPARE(wide[0], L'\0');
    CCA_FreeWide(wide);
}

void TestBaseValues::localTextsAreMadeOnRequest()
{
    QVERIFY(GQ_ToCAS(QStringLiteral("abc"), false) == "abc");
    QVERIFY(GQ_ToCAS(QString::fromUtf8("\xE5\x8F\x91")) == "\xE5\x8F\x91");
    QCOMPARE(GQ_ToQStringFromUtf8("\xE5\x8F\x91"), QString::fromUtf8("\xE5\x8F\x91"));
}

void TestBaseValues::aRectangleKnowsItsMeasures()
{
    CCA_GRect rect;
    QVERIFY(rect.IsEmpty());
    rect.SetRect(1, 2, 11, 22);
    QCOMPARE(rect.Width(), 10.0F);
    QCOMPARE(rect.Height(), 20.0F);
    QVERIFY(!rect.IsEmpty());
    QVERIFY(rect.Contains({1, 2}));
    QVERIFY(rect.Contains({11, 22}));
    QVERIFY(!rect.Contains({11.5F, 22}));
    QVERIFY(CCA_GRect(5, 5, 5, 9).IsEmpty());
    QVERIFY(rect != CCA_GRect(1, 2, 11, 23));
}

void TestBaseValues::rectanglesConvertBothWays()
{
    const CCA_GRect rect(1, 2, 11, 22);
    QCOMPARE(GQ_ToQRectF(rect), QRectF(1, 2, 10, 20));
    QVERIFY(GQ_ToCAGRect(QRectF(1, 2, 10, 20)) == rect);
    CCA_Point point;
    point.x = 3;
    point.y = -4;
    QCOMPARE(GQ_ToQPoint(point), QPoint(3, -4));
}

void TestBaseValues::aMatrixAppliesItsPartsInOrder()
{
    CCA_Matrix matrix(2, 0, 0, 3, 0, 0);
    matrix.Translate(10, 20); // after the scaling
    const CCA_GPoint moved = matrix.TransformPoint({1, 1});
    QCOMPARE(moved.x, 12.0F);
    QCOMPARE(moved.y, 23.0F);
    matrix.Concat(CCA_Matrix(0, 1, -1, 0, 0, 0)); // a quarter turn
    const CCA_GPoint turned = matrix.TransformPoint({1, 1});
    QCOMPARE(turned.x, -23.0F);
    QCOMPARE(turned.y, 12.0F);
    QCOMPARE(matrix.ToQTransform().map(QPointF(1, 1)), QPointF(-23, 12));
    const CCA_Matrix copy(matrix.ToQTransform());
    QCOMPARE(copy.TransformPoint({1, 1}).x, -23.0F);
}

void TestBaseValues::aPathBecomesAPainterPath()
{
    CCA_Path path;
    path.AppendRect(CCA_GRect(0, 0, 10, 20));
    QCOMPARE(path.GetPointCount(), 4);
    QVERIFY(path.GetPoint(3).closesFigure);
    QCOMPARE(path.GetPoint(4).point.x, 0.0F); // a default point
    path.AppendPoint({20, 0}, CCA_Path::MoveTo);
    path.AppendPoint({30, 0}, CCA_Path::BezierTo);
    path.AppendPoint({30, 10}, CCA_Path::BezierTo);
    path.AppendPoint({20, 10}, CCA_Path::BezierTo, true);
    path.Transform(CCA_Matrix(1, 0, 0, 1, 100, 0));
    const QPainterPath painted = GQ_ToQPainterPath(path);
    QVERIFY(painted.contains(QPointF(105, 10)));
    QVERIFY(painted.contains(QPointF(122, 5)));
    QVERIFY(!painted.contains(QPointF(115, 5)));
    QCOMPARE(painted.boundingRect().left(), 100.0);
}

void TestBaseValues::anUnfinishedCurveDrawsNothing()
{
    CCA_Path path;
    path.AppendPoint({0, 0}, CCA_Path::MoveTo);
    path.AppendPoint({10, 0}, CCA_Path::LineTo);
    path.AppendPoint({50, 50}, CCA_Path::BezierTo);
    path.AppendPoint({60, 60}, CCA_Path::BezierTo);
    QCOMPARE(GQ_ToQPainterPath(path).boundingRect(), QRectF(0, 0, 10, 0));
    QVERIFY(GQ_ToQPainterPath(CCA_Path()).isEmpty());
}

void TestBaseValues::numbersAreReadUpToTheFirstThatIsNone_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QVector<float>>("numbers");
    QTest::newRow("empty") << QByteArray("") << QVector<float>();
    QTest::newRow("blanks only") << QByteArray(" \t\n ") << QVector<float>();
    QTest::newRow("one") << QByteArray("1.5") << QVector<float>{1.5F};
    QTest::newRow("many blanks") << QByteArray("  1 \t -2.25\n 3e2 ") << QVector<float>{1, -2.25F, 300};
    QTest::newRow("a word ends it") << QByteArray("1 2 x 3") << QVector<float>{1, 2};
    QTest::newRow("a comma is none") << QByteArray("1,2 3") << QVector<float>();
    QTest::newRow("not finite") << QByteArray("1 inf 2") << QVector<float>{1};
    QTest::newRow("no number") << QByteArray("7 nan") << QVector<float>{7};
    QTest::newRow("too large") << QByteArray("8 1e999") << QVector<float>{8};
}

void TestBaseValues::numbersAreReadUpToTheFirstThatIsNone()
{
    QFETCH(QByteArray, text);
    QFETCH(QVector<float>, numbers);
    QVector<float> read;
    const CCA_ArrayTemplate<float> array = OFD_StringToArray(text.constData(), 0);
    for (const float number : array)
        read.append(number);
    QCOMPARE(read, numbers);
    QCOMPARE(array.GetSize(), numbers.size());
}

void TestBaseValues::aLengthCutsTheTextOfNumbers()
{
    QCOMPARE(OFD_StringToArray("1 2 34", 5).GetSize(), 3);
    QCOMPARE(OFD_StringToArray("1 2 34", 5)[2], 3.0F);
    QCOMPARE(OFD_StringToArray("1 2", 100).GetSize(), 2);
    QCOMPARE(OFD_StringToArray("1 2", -1).GetSize(), 2);
    QVERIFY(OFD_StringToArray(nullptr, 5).IsEmpty());
}

void TestBaseValues::aLockedArrayAnswersDefaultsOutOfRange()
{
    CCA_LockedArray<int> array;
    array.Add(4);
    QCOMPARE(array.GetAt(0), 4);
    QCOMPARE(array.GetAt(1), 0);
    QCOMPARE(array.GetAt(-1), 0);
    CCA_LockedArray<int> copy(array);
    array.RemoveAll();
    QCOMPARE(copy.Values(), QVector<int>{4});
    array = copy;
    QCOMPARE(array.GetSize(), 1);
}

TETO_TEST_MAIN(TestBaseValues)
#include "test_base_values.moc"
