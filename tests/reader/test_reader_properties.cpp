#include "reader_desk.h"

#include <tests/ofd/document/ofd_file.h>
#include <tests/ofd/document/sample_files.h>
#include <tests/support/screens.h>
#include <tests/support/test_main.h>

#include <reader/properties_dialog.h>

#include <frame/view/doc_view.h>
#include <ofd/ofd_document.h>

#include <QAbstractButton>
#include <QAction>
#include <QClipboard>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTranslator>
#include <QtTest>

namespace {

const QByteArray information =
    "<ofd:DocBody><ofd:DocInfo><ofd:DocID>1</ofd:DocID><ofd:Title> The &lt;b&gt;lease </ofd:Title>"
    "<ofd:Author>A. Writer</ofd:Author><ofd:Subject>Rooms</ofd:Subject>"
    "<ofd:CreationDate>2024-05-20</ofd:CreationDate><ofd:ModDate>2024-06-01</ofd:ModDate>"
    "<ofd:Creator>Scribe</ofd:Creator><ofd:CreatorVersion>7.5</ofd:CreatorVersion>"
    "<ofd:Keywords><ofd:Keyword>rent</ofd:Keyword><ofd:Keyword>flat</ofd:Keyword></ofd:Keywords></ofd:DocInfo>"
    "<ofd:DocRoot>Doc_0/Document.xml</ofd:DocRoot></ofd:DocBody>";
const QByteArray restricted = "<ofd:Permissions><ofd:Edit>false</ofd:Edit><ofd:Export>true</ofd:Export>"
                              "<ofd:ValidPeriod StartDate=\"2020-01-01\" EndDate=\"2020-12-31\"/></ofd:Permissions>";

OfdFile Lease()
{
    OfdFile file = OfdFile::WithPages(2).Tail(restricted);
    file.Set("OFD.xml", Element("OFD", information).replace("<ofd:OFD ", "<ofd:OFD Version=\"1.1\" DocType=\"OFD\" "));
    file.Set("Doc_0/Pages/Page_1/Content.xml",
             Element("Page", "<ofd:Area><ofd:PhysicalBox>0 0 80 60.5</ofd:PhysicalBox></ofd:Area>"));
    return file;
}

// The window with one document, and a user's eyes on its properties.
class PropertiesDesk
{
public:
    PropertiesDesk()
        : desk(false)
    {
    }
    void Open(const OfdFile& file, const QString& name = QStringLiteral("file.ofd"))
    {
        OpenPath(file.Write(desk.Folder() + QLatin1Char('/') + name));
    }
    void OpenPath(const QString& path)
    {
        if (!desk.Window()->OpenFile(path) || !QTest::qWaitForWindowActive(desk.Window()))
            QTest::qFail("the file does not open", __FILE__, __LINE__);
    }
    void PressProperties() const { QTest::keyClick(desk.Window(), Qt::Key_Return, Qt::AltModifier); }
    // The same where a dialog may be in front of the window, which takes its keys then.
    void AskProperties() const { desk.Window()->ShowProperties(); }
    QList<PropertiesDialog*> Dialogs() const { return desk.Window()->findChildren<PropertiesDialog*>(); }
    PropertiesDialog* Dialog() const { return Dialogs().value(0); }
    QTabWidget* Topics() const { return Dialog()->findChild<QTabWidget*>(); }
    // What stands under a topic.
    QString Text(PropertyTopic topic) const
    {
        Topics()->setCurrentIndex(int(topic));
        const QWidget* page = Topics()->currentWidget();
        if (const auto* text = qobject_cast<const QTextEdit*>(page))
            return text->toPlainText();
        return page->findChild<QPlainTextEdit*>()->toPlainText();
    }
    // What the general topic says of a name; empty when it has no such line.
    QString Said(const QString& name) const
    {
        const QStringList lines = Text(PropertyTopic::General).split('\n');
        const int at = lines.indexOf(name);
        return at >= 0 ? lines.value(at + 1) : QString();
    }

    ReaderDesk desk;
};

} // namespace

// The properties of a document on the real window.
class TestReaderProperties : public QObject
{
    Q_OBJECT
private slots:
    void altReturnTellsWhatTheDocumentSaysOfItself();
    void whatTheDocumentDoesNotSayHasNoLine();
    void rightsAndTheirPeriodAreTold();
    void theSizeOfThePresentPageFollowsTheView();
    void signaturesAreListedAndSaidToBeUnverified_data();
    void signaturesAreListedAndSaidToBeUnverified();
    void aSignatureThatCannotBeReadIsListedAllTheSame();
    void aSignedListOfPartsIsToldWhereNoSignatureIs();
    void fontsAreEmbeddedOrHaveAStandIn();
    void problemsTellWhatPartAndPosition();
    void problemsThatPaintingMeetsAreThereWhenTheTopicIsChosenAgain();
    void copyPutsTheProblemsOnTheClipboard();
    void askingTwiceShowsOneDialogAndEachTabHasItsOwn();
    void theDialogClosesWithItsDocument();
    void theDialogClosesWithTheWindow();
    void closingTheDialogLeavesTheDocumentAlone();
    void aSaveUnderAnotherNameIsTold();
    void textsCanBeSelectedAndLongOnesWrap();
    void everythingHasANameAndFitsTheScreen();
    void theActionFollowsTheDocument();
    void inChineseAllOfItIsChinese();
    void inChineseTheReasonsOfFilesThatDoNotOpenAreChinese();
    void theDialogLooksAsItShould();
};

void TestReaderProperties::altReturnTellsWhatTheDocumentSaysOfItself()
{
    PropertiesDesk desk;
    desk.Open(Lease());
    desk.PressProperties();
    QVERIFY(desk.Dialog() && desk.Dialog()->isVisible());
    QVERIFY(!desk.Dialog()->isModal());
    QVERIFY(desk.Dialog()->windowTitle().contains("file.ofd"));
    QVERIFY(desk.Said("File").endsWith("file.ofd"));
    const qint64 bytes = QFileInfo(desk.desk.Folder() + "/file.ofd").size();
    QVERIFY(desk.Said("Size").contains(QLocale().toString(bytes)));
    QCOMPARE(desk.Said("Format"), QString("OFD, version 1.1"));
    QCOMPARE(desk.Said("Pages"), QString("2"));
    QCOMPARE(desk.Said("Title"), QString("The <b>lease"));
    QCOMPARE(desk.Said("Author"), QString("A. Writer"));
    QCOMPARE(desk.Said("Subject"), QString("Rooms"));
    QCOMPARE(desk.Said("Keywords"), QString("rent, flat"));
    QCOMPARE(desk.Said("Made with"), QString("Scribe 7.5"));
    QCOMPARE(desk.Said("Created"), QString("2024-05-20"));
    QCOMPARE(desk.Said("Changed"), QString("2024-06-01"));
    QCOMPARE(desk.Said("Signed"), QString("No"));
    QCOMPARE(desk.Said("Encrypted"), QString("No"));
}

void TestReaderProperties::whatTheDocumentDoesNotSayHasNoLine()
{
    PropertiesDesk desk;
    desk.Open(OfdFile::WithPages(1));
    desk.PressProperties();
    const QStringList lines = desk.Text(PropertyTopic::General).split('\n');
    for (const char* name : {"Title", "Author", "Subject", "Keywords", "Made with", "Created", "May be edited"})
        QVERIFY2(!lines.contains(name), name);
    QCOMPARE(desk.Said("Format"), QString("OFD, version not given"));
    QCOMPARE(desk.Said("Permissions"), QString("The document restricts nothing."));
}

void TestReaderProperties::rightsAndTheirPeriodAreTold()
{
    PropertiesDesk desk;
    desk.Open(Lease());
    desk.PressProperties();
    QCOMPARE(desk.Said("May be edited"), QString("No"));
    QCOMPARE(desk.Said("May be annotated"), QString("Yes"));
    QCOMPARE(desk.Said("May be exported"), QString("Yes"));
    const QString period = desk.Said("Permissions hold");
    QVERIFY(period.contains(QLocale().toString(QDate(2020, 1, 1), QLocale::ShortFormat)));
    QVERIFY(period.contains(QLocale().toString(QDate(2020, 12, 31), QLocale::ShortFormat)));
    QVERIFY(period.endsWith("(not today: no editing)"));
}

void TestReaderProperties::theSizeOfThePresentPageFollowsTheView()
{
    PropertiesDesk desk;
    desk.Open(Lease());
    desk.PressProperties();
    QCOMPARE(desk.Said("Size of the present page"), QString::fromUtf8("100 × 100 mm"));
    desk.desk.View()->GoToPage(desk.desk.View(), 1, CCA_GRect(), false);
    QTRY_COMPARE(desk.desk.View()->CurrentPageIndex(), 1);
    QCOMPARE(desk.Said("Size of the present page"), QString::fromUtf8("80 × %1 mm").arg(QLocale().toString(60.5)));
}

void TestReaderProperties::signaturesAreListedAndSaidToBeUnverified_data()
{
    QTest::addColumn<QString>("sample");
    QTest::newRow("as usual") << "deviations/signed";
    QTest::newRow("provider in elements") << "deviations/signature_provider_children";
}

void TestReaderProperties::signaturesAreListedAndSaidToBeUnverified()
{
    QFETCH(QString, sample);
    PropertiesDesk desk;
    desk.OpenPath(SamplePath(sample));
    desk.PressProperties();
    QCOMPARE(desk.Said("Signed"), QString("Yes, not verified"));
    const QString text = desk.Text(PropertyTopic::Signatures);
    QVERIFY(text.startsWith("Seals are painted on the pages, but signatures are NOT verified"));
    const QStringList lines = text.split('\n');
    const auto said = [&lines](const char* name) { return lines.value(lines.indexOf(name) + 1); };
    QCOMPARE(said("Signature"), QString("s001"));
    QCOMPARE(said("Type"), QString("Electronic seal"));
    QCOMPARE(said("Provider"), QString("tetobaisfla 1.0"));
    QCOMPARE(said("Company"), QString("Sample"));
    QCOMPARE(said("Date"), QString("2024-05-20 08:30:00"));
    QCOMPARE(said("Seals on pages"), QString("1"));
    QVERIFY(said("Parts it covers").toInt() > 3);
}

void TestReaderProperties::aSignatureThatCannotBeReadIsListedAllTheSame()
{
    OfdFile file = OfdFile::WithPages(1);
    file.Set("OFD.xml", Element("OFD", "<ofd:DocBody><ofd:DocRoot>Doc_0/Document.xml</ofd:DocRoot>"
                                       "<ofd:Signatures>Doc_0/S.xml</ofd:Signatures></ofd:DocBody>"));
    QByteArray entries = "<ofd:Signature ID=\"1\" Type=\"Sign\" BaseLoc=\"gone.xml\"/>";
    for (int i = 2; i <= 205; ++i)
        entries += "<ofd:Signature ID=\"" + QByteArray::number(i) + "\" BaseLoc=\"gone.xml\"/>";
    file.Set("Doc_0/S.xml", Element("Signatures", entries));
    PropertiesDesk desk;
    desk.Open(file);
    desk.PressProperties();
    const QString text = desk.Text(PropertyTopic::Signatures);
    QVERIFY(text.contains("Signature without a seal"));
    QCOMPARE(text.count("The signature cannot be read."), 200);
    QVERIFY(text.contains("Further signatures, not listed: 5"));
}

void TestReaderProperties::aSignedListOfPartsIsToldWhereNoSignatureIs()
{
    PropertiesDesk desk;
    desk.OpenPath(SamplePath("deviations/integrity_list"));
    desk.PressProperties();
    QCOMPARE(desk.Said("Signed"), QString("Yes, not verified"));
    QVERIFY(desk.Text(PropertyTopic::Signatures).contains("the file carries a signed list of its parts instead"));
}

void TestReaderProperties::fontsAreEmbeddedOrHaveAStandIn()
{
    PropertiesDesk desk;
    desk.Open(OfdFile::WithPages(1)
                  .Resources("<ofd:Fonts><ofd:Font ID=\"20\" FontName=\"Nowhere Sans\"/>"
                             "<ofd:Font ID=\"21\" FontName=\"Nowhere Sans\"/>"
                             "<ofd:Font ID=\"22\" FontName=\"Brought\">"
                             "<ofd:FontFile>brought.ttf</ofd:FontFile></ofd:Font></ofd:Fonts>")
                  .Set("Doc_0/Res/brought.ttf", "no font, but there"));
    desk.PressProperties();
    const QString text = desk.Text(PropertyTopic::Fonts);
    const QStringList lines = text.split('\n');
    QCOMPARE(lines.value(lines.indexOf("Brought") + 1), QString("embedded"));
    QCOMPARE(lines.count("Nowhere Sans"), 1);
    const QString standIn = lines.value(lines.indexOf("Nowhere Sans") + 1);
    QVERIFY2(standIn.startsWith("not embedded"), qPrintable(standIn));
    QVERIFY(desk.Text(PropertyTopic::Problems).contains("\"Nowhere Sans\""));
}

void TestReaderProperties::problemsTellWhatPartAndPosition()
{
    PropertiesDesk desk;
    desk.Open(OfdFile::WithPages(1).Common("<ofd:PublicRes>Missing.xml</ofd:PublicRes>"));
    desk.PressProperties();
    const QString text = desk.Text(PropertyTopic::Problems);
    QVERIFY(text.startsWith("What was wrong in the file"));
    QVERIFY2(text.contains("Part: Doc_0/Document.xml"), qPrintable(text));
    QVERIFY2(text.contains("Position: byte "), qPrintable(text));
    QVERIFY2(text.contains("Missing.xml"), qPrintable(text));
}

void TestReaderProperties::problemsThatPaintingMeetsAreThereWhenTheTopicIsChosenAgain()
{
    PropertiesDesk desk;
    desk.Open(OfdFile::WithPages(1));
    desk.PressProperties();
    QVERIFY(desk.Text(PropertyTopic::Problems).startsWith("Nothing was wrong in what was read so far."));
    desk.Open(OfdFile::WithPage("<ofd:ImageObject ID=\"7\" Boundary=\"0 0 50 50\" ResourceID=\"99\"/>"), "image.ofd");
    desk.desk.View()->FinishRendering();
    desk.AskProperties();
    QVERIFY(desk.Dialogs().value(1));
    auto* topics = desk.Dialogs().value(1)->findChild<QTabWidget*>();
    topics->setCurrentIndex(int(PropertyTopic::Problems));
    const QString text = topics->currentWidget()->findChild<QPlainTextEdit*>()->toPlainText();
    QVERIFY2(text.contains("object 7"), qPrintable(text));
}

void TestReaderProperties::copyPutsTheProblemsOnTheClipboard()
{
    PropertiesDesk desk;
    desk.Open(OfdFile::WithPages(1).Common("<ofd:PublicRes>Missing.xml</ofd:PublicRes>"));
    desk.PressProperties();
    QGuiApplication::clipboard()->clear();
    const QString text = desk.Text(PropertyTopic::Problems);
    QTest::mouseClick(desk.Dialog()->findChild<QAbstractButton*>("copyProblems"), Qt::LeftButton);
    QCOMPARE(QGuiApplication::clipboard()->text(), text);
    QVERIFY(text.contains("Missing.xml"));
}

void TestReaderProperties::askingTwiceShowsOneDialogAndEachTabHasItsOwn()
{
    PropertiesDesk desk;
    desk.Open(Lease());
    desk.AskProperties();
    const QPointer<PropertiesDialog> first = desk.Dialog();
    desk.desk.Window()->activateWindow();
    QTRY_VERIFY(!first->isActiveWindow());
    desk.AskProperties();
    QTRY_VERIFY(first->isActiveWindow()); // it came back to the front
    QCOMPARE(desk.Dialogs().size(), 1);
    desk.Open(OfdFile::WithPages(1), "other.ofd");
    desk.AskProperties();
    QCOMPARE(desk.Dialogs().size(), 2);
    QVERIFY(desk.Dialogs().at(0)->Tab() != desk.Dialogs().at(1)->Tab());
    QVERIFY(desk.Dialogs().at(1)->windowTitle().contains("other.ofd"));
}

void TestReaderProperties::theDialogClosesWithItsDocument()
{
    PropertiesDesk desk;
    desk.Open(Lease());
    desk.AskProperties();
    desk.Open(OfdFile::WithPages(1), "other.ofd");
    desk.AskProperties();
    const QPointer<PropertiesDialog> first = desk.Dialogs().at(0);
    QVERIFY(desk.desk.Window()->CloseTab(0));
    QVERIFY(!first || !first->isVisible());
    QTRY_VERIFY(!first);
    QCOMPARE(desk.Dialogs().size(), 1);
    QVERIFY(desk.Dialog()->isVisible());
    QCOMPARE(desk.Said("Pages"), QString("1"));
}

void TestReaderProperties::theDialogClosesWithTheWindow()
{
    PropertiesDesk desk;
    desk.Open(Lease());
    desk.PressProperties();
    const QPointer<PropertiesDialog> dialog = desk.Dialog();
    desk.desk.CloseWindow();
    QVERIFY(!dialog);
}

void TestReaderProperties::closingTheDialogLeavesTheDocumentAlone()
{
    PropertiesDesk desk;
    desk.Open(Lease());
    desk.PressProperties();
    const QPointer<PropertiesDialog> dialog = desk.Dialog();
    QTest::keyPress(dialog, Qt::Key_Escape); // no release: the dialog is gone by then
    QTRY_VERIFY(!dialog);
    QCOMPARE(desk.desk.Window()->TabCount(), 1);
    QVERIFY(!desk.desk.Window()->CurrentTab()->IsDirty());
    desk.AskProperties();
    QVERIFY(desk.Dialog()->isVisible());
}

void TestReaderProperties::aSaveUnderAnotherNameIsTold()
{
    PropertiesDesk desk;
    desk.Open(Lease());
    desk.PressProperties();
    const QString path = desk.desk.Folder() + "/renamed.ofd";
    QVERIFY(desk.desk.Window()->SaveTabAs(desk.desk.Window()->CurrentTab(), path));
    QVERIFY(desk.Said("File").endsWith("renamed.ofd"));
    QVERIFY(desk.Dialog()->windowTitle().contains("renamed.ofd"));
}

void TestReaderProperties::textsCanBeSelectedAndLongOnesWrap()
{
    PropertiesDesk desk;
    OfdFile file = Lease();
    const QByteArray endless(6000, 'W'); // without a place to break at
    file.Set("OFD.xml", file.Part("OFD.xml").replace("A. Writer", endless));
    desk.Open(file);
    desk.PressProperties();
    const int width = desk.Dialog()->width();
    QVERIFY(desk.Said("Author").startsWith("WWWW"));
    QVERIFY(desk.Said("Author").size() < 5000); // and is cut
    auto* text = qobject_cast<QTextEdit*>(desk.Topics()->currentWidget());
    QVERIFY(text->isReadOnly());
    QVERIFY(text->textInteractionFlags() & Qt::TextSelectableByMouse);
    QCOMPARE(text->horizontalScrollBar()->maximum(), 0);
    QVERIFY(text->document()->idealWidth() <= text->viewport()->width());
    QCOMPARE(desk.Dialog()->width(), width);
    text->selectAll();
    text->copy();
    QVERIFY(QGuiApplication::clipboard()->text().contains("Scribe 7.5"));
}

void TestReaderProperties::everythingHasANameAndFitsTheScreen()
{
    PropertiesDesk desk;
    desk.Open(Lease());
    desk.PressProperties();
    PropertiesDialog* dialog = desk.Dialog();
    QVERIFY(QGuiApplication::primaryScreen()->availableSize().width() >= dialog->width());
    QVERIFY(QGuiApplication::primaryScreen()->availableSize().height() >= dialog->height());
    for (const QAbstractButton* button : dialog->findChildren<QAbstractButton*>()) {
        if (!qobject_cast<QTabBar*>(button->parent()))
            QVERIFY(!button->accessibleName().isEmpty());
    }
    int texts = 0;
    for (const QAbstractScrollArea* area : dialog->findChildren<QAbstractScrollArea*>()) {
        QVERIFY(!area->accessibleName().isEmpty());
        ++texts;
    }
    QCOMPARE(texts, 4);
    QVERIFY(!desk.Topics()->accessibleName().isEmpty());
}

void TestReaderProperties::theActionFollowsTheDocument()
{
    PropertiesDesk desk;
    desk.Open(Lease());
    const QList<QAction*> actions = desk.desk.Window()->findChildren<QAction*>();
    const auto found = std::find_if(actions.begin(), actions.end(), [](const QAction* action) {
        return action->shortcut() == QKeySequence(Qt::ALT | Qt::Key_Return);
    });
    QVERIFY(found != actions.end());
    QVERIFY((*found)->isEnabled());
    QVERIFY(desk.desk.Window()->CloseTab(0));
    QVERIFY(!(*found)->isEnabled());
    desk.desk.Window()->ShowProperties(); // nothing to tell of
    QVERIFY(!desk.Dialog());
}

void TestReaderProperties::inChineseAllOfItIsChinese()
{
    QTranslator chinese;
    QVERIFY(chinese.load(qEnvironmentVariable("TETO_BIN") + "/languages/tetobaisfla_zh_CN.qm"));
    QCoreApplication::installTranslator(&chinese);
    PropertiesDesk desk;
    desk.Open(Lease());
    desk.AskProperties();
    QStringList texts{desk.Dialog()->windowTitle().remove("file.ofd")};
    for (int i = 0; i < desk.Topics()->count(); ++i)
        texts << desk.Topics()->tabText(i);
    for (const QPushButton* button : desk.Dialog()->findChildren<QPushButton*>())
        texts << button->accessibleName() << button->text().remove("(&C)");
    texts << desk.Text(PropertyTopic::Signatures) << desk.Text(PropertyTopic::Problems);
    for (const QString& text : qAsConst(texts))
        QVERIFY2(!text.contains(QRegularExpression("[A-Za-z]{2}")), qPrintable(text));
    QCOMPARE(desk.Said(QString::fromUtf8("标题")), QString("The <b>lease"));
    QCOMPARE(desk.Said(QString::fromUtf8("允许编辑")), QString::fromUtf8("否"));
    QCOMPARE(desk.Said(QString::fromUtf8("当前页面尺寸")), QString::fromUtf8("100 × 100 毫米"));
    Screens::SaveScreen(desk.Dialog(), "properties-chinese");
    QCoreApplication::removeTranslator(&chinese);
}

void TestReaderProperties::inChineseTheReasonsOfFilesThatDoNotOpenAreChinese()
{
    QTranslator chinese;
    QVERIFY(chinese.load(qEnvironmentVariable("TETO_BIN") + "/languages/tetobaisfla_zh_CN.qm"));
    QCoreApplication::installTranslator(&chinese);
    const QTemporaryDir folder;
    const QString path = OfdFile::WithPages(0).Write(folder.filePath("pages.ofd"));
    const QByteArray whole = BytesOf(OfdFile::WithPages(1).Write(folder.filePath("whole.ofd")));
    QStringList reasons{ofd::OfdDocument::Open(path).error};
    for (const QByteArray& bytes : {QByteArray(), QByteArray("text "), whole.left(whole.size() - 30)}) {
        QFile file(folder.filePath("broken.ofd"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        reasons << ofd::OfdDocument::Open(file.fileName()).error;
    }
    QCoreApplication::removeTranslator(&chinese);
    QCOMPARE(reasons.removeDuplicates(), 0); // each tells its own
    for (QString& reason : reasons)
        QVERIFY2(!reason.remove("OFD").contains(QRegularExpression("[A-Za-z]{2}")) && reason.size() > 3,
                 qPrintable(reason));
}

void TestReaderProperties::theDialogLooksAsItShould()
{
    PropertiesDesk desk;
    desk.OpenPath(SamplePath("deviations/signed"));
    desk.desk.View()->FinishRendering();
    desk.PressProperties();
    QVERIFY(QTest::qWaitForWindowExposed(desk.Dialog()));
    const QList<QPair<PropertyTopic, QString>> topics{{PropertyTopic::General, "properties-general"},
                                                      {PropertyTopic::Signatures, "properties-signatures"},
                                                      {PropertyTopic::Fonts, "properties-fonts"},
                                                      {PropertyTopic::Problems, "properties-problems"}};
    QList<QImage> pictures;
    for (const auto& topic : topics) {
        QVERIFY(!desk.Text(topic.first).isEmpty());
        Screens::SaveScreen(desk.Dialog(), topic.second);
        const QImage picture = Screens::Grab(desk.Dialog());
        QVERIFY(!pictures.contains(picture));
        pictures.append(picture);
        QCOMPARE(Screens::Grab(desk.Dialog(), 2).size(), picture.size() * 2);
    }
}

TETO_TEST_MAIN(TestReaderProperties)
#include "test_reader_properties.moc"
