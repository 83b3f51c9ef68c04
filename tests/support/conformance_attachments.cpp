#include "byte_streams.h"
#include "conformance_checks.h"

#include <frame/base/converters.h>

#include <QtTest>

#include <atomic>
#include <thread>

namespace {

bool AddBytes(IG_Document* document, const QByteArray& bytes, const char* name)
{
    return document->AddAttachment(new BytesReader(bytes), false, name, "txt", name, "txt", 1);
}

void AttachmentsAreListed(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    QCOMPARE(document->GetAttachmentCount(), 2);
    const G_AttachmentInfo first = document->GetAttachment(0);
    QVERIFY(first.name == "data");
    QVERIFY(first.format == "xml");
    QCOMPARE(first.id, 31);
    QCOMPARE(first.size, 2.0F);
    QVERIFY(first.visible);
    QVERIFY(!document->GetAttachment(1).visible);
    QCOMPARE(document->GetAttachmentIndexById(32), 1);
    QVERIFY(document->GetAttachmentIndexById(5) < 0);
    QVERIFY(document->GetAttachment(2).name.IsEmpty());
    QVERIFY(document->GetAttachment(-1).name.IsEmpty());
}

void AttachmentsOutOfRangeAreRefused(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    BytesWriter writer;
    QVERIFY(!document->WriteAttachment(-1, &writer));
    QVERIFY(!document->WriteAttachment(2, &writer));
    QVERIFY(writer.bytes.isEmpty());
    QVERIFY(!document->RemoveAttachment(-1));
    QVERIFY(!document->RemoveAttachment(2));
    QCOMPARE(document->GetAttachmentCount(), 2);
    QVERIFY(!document->IsModified());
}

void AnAttachmentIsWrittenWhole(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    BytesWriter writer;
    QVERIFY(document->WriteAttachment(0, &writer));
    QCOMPARE(writer.bytes.size(), 2048);
    BytesWriter refusing(true);
    QVERIFY(!document->WriteAttachment(0, &refusing));
    QVERIFY(!document->WriteAttachment(0, nullptr));
}

void AnAddedAttachmentComesBack(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    const QByteArray bytes = QByteArray(5000, 'x') + "end";
    QVERIFY(AddBytes(document.get(), bytes, "notes"));
    QCOMPARE(document->GetAttachmentCount(), 3);
    const G_AttachmentInfo added = document->GetAttachment(2);
    QVERIFY(added.name == "notes");
    QVERIFY(added.format == "txt");
    QVERIFY(added.visible);
    QVERIFY(!added.addDate.IsEmpty());
    QVERIFY(added.id > 0 && added.id != 31 && added.id != 32);
    QVERIFY(qAbs(added.size - 5003.0F / 1024) < 0.01F);
    QCOMPARE(document->GetAttachmentIndexById(added.id), 2);
    BytesWriter writer;
    QVERIFY(document->WriteAttachment(2, &writer));
    QCOMPARE(writer.bytes, bytes);
    QVERIFY(document->IsModified());
}

void NamesComeOutHarmless(ConformanceBackend& backend)
{
    const auto document = backend.Make(QStringLiteral("page 210 297\n"
                                                      "attachment ../../etc/passwd xml 1 1\n"
                                                      "attachment \"..\\\\a\\nb\" xml 1 2\n"));
    QVERIFY(document);
    QVERIFY(AddBytes(document.get(), "x", "../added\x01"));
    QCOMPARE(document->GetAttachmentCount(), 3);
    for (int i = 0; i < 3; ++i) {
        const QString name = GQ_ToQStringFromUtf8(document->GetAttachment(i).name);
        QVERIFY(!name.isEmpty());
        QVERIFY(!name.startsWith(QLatin1Char('.')));
        for (const QChar letter : name)
            QVERIFY(letter != QLatin1Char('/') && letter != QLatin1Char('\\') && letter.unicode() >= 0x20);
    }
}

void ABrokenSourceAddsNothing(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    auto* broken = new BytesReader(QByteArray(300000, 'x'), 100000);
    QVERIFY(!document->AddAttachment(broken, false, "bad", "bin", "bad", "bin", 1));
    QVERIFY(!document->AddAttachment(nullptr, false, "bad", "bin", "bad", "bin", 1));
    QCOMPARE(document->GetAttachmentCount(), 2);
    QVERIFY(!document->IsModified());
}

void RemovingAnAttachmentKeepsTheOthers(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    QVERIFY(document->RemoveAttachment(0));
    QCOMPARE(document->GetAttachmentCount(), 1);
    QCOMPARE(document->GetAttachment(0).id, 32);
    QCOMPARE(document->GetAttachmentIndexById(32), 0);
    QVERIFY(document->GetAttachmentIndexById(31) < 0);
    BytesWriter writer;
    QVERIFY(document->WriteAttachment(0, &writer));
    QCOMPARE(writer.bytes.size(), 1024);
    QVERIFY(document->IsModified());
}

void AttachmentsMayBeReachedFromTwoThreads(ConformanceBackend& backend)
{
    const auto document = backend.Make(ConformanceFixture());
    QVERIFY(document);
    int addedCount = 0;
    std::atomic<bool> isDone{false};
    std::thread adder([&] {
        for (int i = 0; i < 50; ++i)
            addedCount += AddBytes(document.get(), QByteArray(i, 'x'), "worker") ? 1 : 0;
        isDone = true;
    });
    int seenCount = 0;
    bool isInOrder = true;
    do {
        const int count = document->GetAttachmentCount();
        isInOrder = isInOrder && count >= seenCount && !document->GetAttachment(count - 1).name.IsEmpty();
        seenCount = count;
    } while (!isDone);
    adder.join();
    QVERIFY(isInOrder);
    QCOMPARE(addedCount, 50);
    QCOMPARE(document->GetAttachmentCount(), 52);
    QSet<int> ids;
    for (int i = 0; i < 52; ++i)
        ids.insert(document->GetAttachment(i).id);
    QCOMPARE(ids.size(), 52);
}

void APlainDocumentGrantsEverything(ConformanceBackend& backend)
{
    const auto document = backend.Make(QStringLiteral("page 210 297\n"));
    QVERIFY(document);
    QVERIFY(!document->HasPermissions());
    QVERIFY(document->MayEdit());
    QVERIFY(document->MayAnnotate());
    QVERIFY(document->MayExport());
    QVERIFY(document->CheckRight(true));
    QVERIFY(!document->IsReadOnly());
    QVERIFY(!document->IsSignProtected());
    QVERIFY(!document->IsEncrypted());
    QVERIFY(!document->IsModified());
}

void TakenRightsAreDenied(ConformanceBackend& backend)
{
    const auto document = backend.Make(QStringLiteral("page 210 297\nrights edit=no annot=no\n"));
    QVERIFY(document);
    QVERIFY(document->HasPermissions());
    QVERIFY(!document->MayEdit());
    QVERIFY(!document->MayAnnotate());
    QVERIFY(document->MayExport());
    QVERIFY(!document->CheckRight(true));
}

void AReadOnlyDocumentSaysSo(ConformanceBackend& backend)
{
    const auto document = backend.Make(QStringLiteral("page 210 297\nreadonly\n"));
    QVERIFY(document);
    QVERIFY(document->IsReadOnly());
}

void KeysAreUniqueAndPrepareIsRepeatable(ConformanceBackend& backend)
{
    const auto one = backend.Make(QStringLiteral("page 210 297\n"));
    const auto two = backend.Make(QStringLiteral("page 210 297\n"));
    QVERIFY(one && two);
    QVERIFY(!one->GetDocumentKey().IsEmpty());
    QVERIFY(one->GetDocumentKey() != two->GetDocumentKey());
    QVERIFY(one->GetDocumentKey() == one->GetDocumentKey());
    one->Prepare();
    one->Prepare();
    QVERIFY(!one->IsModified());
}

void OnlyWhatSavingWouldWriteIsAModification(ConformanceBackend& backend)
{
    const auto document = backend.Make(QStringLiteral("page 210 297\n"));
    QVERIFY(document);
    QVERIFY(document->CreateBookmarkRoot());
    QVERIFY(document->CreateOutlineRoot());
    QVERIFY(!document->IsModified()); // an empty root is not written
    auto* bookmark = new G_Bookmark;
    bookmark->name = "new";
    bookmark->dest->pageId = document->PageIdFromIndex(0);
    QVERIFY(document->GetBookmarkRoot()->AddSubNode(0, bookmark));
    QVERIFY(document->IsModified());
}

} // namespace

QVector<ConformanceCheck> AttachmentConformanceChecks()
{
    return {
        {"attachments are listed", AttachmentsAreListed},
        {"attachments out of range are refused", AttachmentsOutOfRangeAreRefused},
        {"an attachment is written whole", AnAttachmentIsWrittenWhole},
        {"an added attachment comes back", AnAddedAttachmentComesBack},
        {"names come out harmless", NamesComeOutHarmless},
        {"a broken source adds nothing", ABrokenSourceAddsNothing},
        {"removing an attachment keeps the others", RemovingAnAttachmentKeepsTheOthers},
        {"attachments may be reached from two threads", AttachmentsMayBeReachedFromTwoThreads},
        {"a plain document grants everything", APlainDocumentGrantsEverything},
        {"taken rights are denied", TakenRightsAreDenied},
        {"a read-only document says so", AReadOnlyDocumentSaysSo},
        {"keys are unique and Prepare is repeatable", KeysAreUniqueAndPrepareIsRepeatable},
        {"only what saving would write is a modification", OnlyWhatSavingWouldWriteIsAModification},
    };
}
