#include <tests/support/test_main.h>

#include <reader/single_instance.h>

#include <QSignalSpy>
#include <QtTest>

#include <thread>

// A second start hands its files to the first.
class TestReaderSingleInstance : public QObject
{
    Q_OBJECT
private slots:
    void aSecondStartHandsItsFilesToTheFirst();
    void withoutAFirstInstanceNothingIsHandedOver();

private:
    QString Name() const { return QStringLiteral("tetoreader-test-%1").arg(QCoreApplication::applicationPid()); }
};

void TestReaderSingleInstance::aSecondStartHandsItsFilesToTheFirst()
{
    SingleInstance first(Name());
    QVERIFY(first.Listen());
    QSignalSpy received(&first, &SingleInstance::FilesReceived);
    const QStringList files{"/a/one.ofd", QString::fromUtf8("/b/二 two.ofd")};
    bool isTaken = false;
    std::thread second([&] { isTaken = SingleInstance(Name()).HandOver(files); });
    const bool came = received.wait(5000);
    second.join();
    QVERIFY(came);
    QVERIFY(isTaken);
    QCOMPARE(received.first().first().toStringList(), files);
}

void TestReaderSingleInstance::withoutAFirstInstanceNothingIsHandedOver()
{
    SingleInstance alone(Name() + "-alone");
    QVERIFY(!alone.HandOver({"/a/one.ofd"}));
}

TETO_TEST_MAIN(TestReaderSingleInstance)
#include "test_reader_single_instance.moc"
