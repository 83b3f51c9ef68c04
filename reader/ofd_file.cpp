#include "ofd_file.h"

#include "ofd_properties.h"

#include <ofd/ofd_document.h>

#include <QCoreApplication>

namespace {

class OfdFile : public DocumentFile
{
public:
    explicit OfdFile(std::unique_ptr<ofd::OfdDocument> opened)
        : document(std::move(opened))
    {
    }
    IG_Document* Document() override { return document.get(); }
    QString Path() const override { return document->GetPath(); }
    QString Title() const override { return document->GetTitle(); }
    PropertySection Properties(PropertyTopic topic) override { return OfdProperties(*document, topic); }
    SaveOutcome Save(bool overwrites) override { return Outcome(document->Save(overwrites)); }
    bool BreaksSignatures() const override { return document->BreaksSignatures(); }
    SaveOutcome SaveAs(const QString& path) override { return Outcome(document->SaveAs(path)); }
    SaveOutcome SaveCopy(const QString& path) override { return Outcome(document->SaveCopy(path)); }

private:
    static SaveOutcome Outcome(const ofd::DocumentSaveResult& result)
    {
        SaveOutcome outcome;
        outcome.done = result.isSaved;
        outcome.error = result.error;
        outcome.isForeignChange = result.isForeignChange;
        if (result.isSaved && !result.notWritten.isEmpty()) {
            outcome.warning = QCoreApplication::translate("OfdFile", "Saved, but not these changes: %1.")
                                  .arg(result.notWritten.join(QStringLiteral(", ")));
        }
        return outcome;
    }

    std::unique_ptr<ofd::OfdDocument> document;
};

} // namespace

bool IsOfdHead(const QByteArray& head)
{
    return head.startsWith("PK");
}

OpenOutcome OpenOfdFile(const QString& path, bool readOnly)
{
    ofd::OpenResult result = ofd::OfdDocument::Open(path, readOnly);
    if (!result)
        return {nullptr, result.error};
    return {std::make_unique<OfdFile>(std::move(result.document)), QString()};
}
