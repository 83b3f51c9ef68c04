#include "ofd_properties.h"

#include <ofd/ofd_document.h>

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QLocale>

namespace {

constexpr int mostSignatures = 200;
constexpr int mostFonts = 200;

class OfdTexts
{
    Q_DECLARE_TR_FUNCTIONS(OfdProperties)
public:
    static PropertySection General(ofd::OfdDocument& document);
    static PropertySection Signatures(ofd::OfdDocument& document);
    static PropertySection Fonts(ofd::OfdDocument& document);
    static PropertySection Problems(const ofd::OfdDocument& document);

private:
    static PropertyGroup File(const ofd::DocumentFacts& facts);
    static PropertyGroup Information(const ofd::DocumentFacts& facts);
    static PropertyGroup Rights(const ofd::DocumentFacts& facts);
    static PropertyGroup SignatureGroup(const ofd::SignatureFacts& signature, int number);
    static PropertyGroup ProblemGroup(const ofd::Problem& problem);
    static QString Period(const ofd::Permissions& permissions);
    static QString Printing(const ofd::Permissions& permissions);
    static QString SizeText(qint64 bytes);
    static QString Version(const ofd::VersionFacts& version);
    static QString YesOrNo(bool isSo) { return isSo ? tr("Yes") : tr("No"); }
};

// Leaves out what the document does not say.
void AddSaid(PropertyGroup& group, const QString& name, const QString& value)
{
    if (!value.isEmpty())
        group.append({name, value});
}

QString OfdTexts::SizeText(qint64 bytes)
{
    const QLocale locale;
    return tr("%1 (%2 bytes)").arg(locale.formattedDataSize(bytes), locale.toString(bytes));
}

// Which state of the document is shown and edited, of those that its file keeps; empty when it keeps none.
QString OfdTexts::Version(const ofd::VersionFacts& version)
{
    const QLocale locale;
    const QString count = locale.toString(version.count);
    if (version.count == 0)
        return QString();
    if (version.shown == 0)
        return tr("none of %1, but the document itself").arg(count);
    const QString place = version.name.isEmpty()
                              ? tr("%1 of %2").arg(locale.toString(version.shown), count)
                              : tr("%1 of %2 (%3)").arg(locale.toString(version.shown), count, version.name);
    return version.isNewest ? place : tr("%1, not the newest").arg(place);
}

PropertyGroup OfdTexts::File(const ofd::DocumentFacts& facts)
{
    PropertyGroup group;
    group.append({tr("File"), QDir::toNativeSeparators(facts.path)});
    group.append({tr("Size"), SizeText(facts.bytes)});
    group.append({tr("Format"), facts.formatVersion.isEmpty() ? tr("OFD, version not given")
                                                              : tr("OFD, version %1").arg(facts.formatVersion)});
    AddSaid(group, tr("Version shown"), Version(facts.version));
    group.append({tr("Pages"), QLocale().toString(facts.pages)});
    return group;
}

PropertyGroup OfdTexts::Information(const ofd::DocumentFacts& facts)
{
    PropertyGroup group;
    const QString program = QStringList{facts.creator, facts.creatorVersion}.join(QLatin1Char(' ')).trimmed();
    AddSaid(group, tr("Title"), facts.title);
    AddSaid(group, tr("Author"), facts.author);
    AddSaid(group, tr("Subject"), facts.subject);
    AddSaid(group, tr("Summary"), facts.summary);
    AddSaid(group, tr("Keywords"), facts.keywords.join(QStringLiteral(", ")));
    AddSaid(group, tr("Made with"), program);
    AddSaid(group, tr("Created"), facts.creationDate);
    AddSaid(group, tr("Changed"), facts.modificationDate);
    return group;
}

QString OfdTexts::Period(const ofd::Permissions& permissions)
{
    const QLocale locale;
    const QString from = locale.toString(permissions.validFrom, QLocale::ShortFormat);
    const QString until = locale.toString(permissions.validUntil, QLocale::ShortFormat);
    QString text;
    if (permissions.validFrom.isValid() && permissions.validUntil.isValid())
        text = tr("%1 to %2").arg(from, until);
    else if (permissions.validFrom.isValid())
        text = tr("from %1 on").arg(from);
    else if (permissions.validUntil.isValid())
        text = tr("until %1").arg(until);
    if (!text.isEmpty() && !permissions.IsValidOn(QDate::currentDate()))
        text = tr("%1 (not today: no editing)").arg(text);
    return text;
}

QString OfdTexts::Printing(const ofd::Permissions& permissions)
{
    const bool isAllowed = permissions.print && permissions.copies != 0;
    return isAllowed && permissions.copies > 0 ? tr("Yes, copies at a time: at most %1").arg(permissions.copies)
                                               : YesOrNo(isAllowed);
}

PropertyGroup OfdTexts::Rights(const ofd::DocumentFacts& facts)
{
    PropertyGroup group;
    const ofd::Permissions& permissions = facts.permissions;
    if (permissions.exist) {
        group.append({tr("May be edited"), YesOrNo(permissions.edit)});
        group.append({tr("May be annotated"), YesOrNo(permissions.annotate)});
        group.append({tr("May be exported"), YesOrNo(permissions.exportContent)});
        group.append({tr("May be printed"), Printing(permissions)});
        AddSaid(group, tr("Permissions hold"), Period(permissions));
    } else {
        group.append({tr("Permissions"), tr("The document restricts nothing.")});
    }
    group.append({tr("Signed"), facts.isSigned ? tr("Yes, not verified") : tr("No")});
    group.append({tr("Encrypted"), facts.isEncrypted ? tr("Yes, in parts") : tr("No")});
    return group;
}

PropertySection OfdTexts::General(ofd::OfdDocument& document)
{
    const ofd::DocumentFacts facts = document.GetFacts();
    return {QString(), {File(facts), Information(facts), Rights(facts)}};
}

PropertyGroup OfdTexts::SignatureGroup(const ofd::SignatureFacts& signature, int number)
{
    PropertyGroup group;
    group.append({tr("Signature"), signature.id.isEmpty() ? QLocale().toString(number) : signature.id});
    group.append({tr("Type"), signature.isSeal ? tr("Electronic seal") : tr("Signature without a seal")});
    if (!signature.isRead) {
        group.append({QString(), tr("The signature cannot be read.")});
        return group;
    }
    const QString provider = QStringList{signature.provider, signature.providerVersion}.join(QLatin1Char(' '));
    group.append({tr("Provider"), provider.trimmed().isEmpty() ? tr("not given") : provider.trimmed()});
    AddSaid(group, tr("Company"), signature.company);
    group.append({tr("Date"), signature.date.isEmpty() ? tr("not given") : signature.date});
    group.append({tr("Seals on pages"), QLocale().toString(signature.stamps)});
    group.append({tr("Parts it covers"), QLocale().toString(signature.coveredParts)});
    return group;
}

PropertySection OfdTexts::Signatures(ofd::OfdDocument& document)
{
    const ofd::SignatureList list = document.GetSignatures(mostSignatures);
    PropertySection section;
    section.note = tr("Seals are painted on the pages, but signatures are NOT verified: nothing here tells whether a "
                      "signature is genuine or whether the document was changed since.");
    for (const ofd::SignatureFacts& signature : list.signatures)
        section.groups.append(SignatureGroup(signature, section.groups.size() + 1));
    if (list.more > 0)
        section.groups.append({{QString(), tr("Further signatures, not listed: %1").arg(list.more)}});
    if (section.groups.isEmpty()) {
        const QString none = document.IsSignProtected()
                                 ? tr("No signature is listed; the file carries a signed list of its parts instead.")
                                 : tr("The document lists no signature.");
        section.groups.append({{QString(), none}});
    }
    return section;
}

PropertySection OfdTexts::Fonts(ofd::OfdDocument& document)
{
    const ofd::FontList list = document.GetFonts(mostFonts);
    PropertyGroup group;
    for (const ofd::FontFacts& font : list.fonts) {
        const QString standIn = font.standIn.isEmpty() ? tr("not embedded, and no installed font stands in")
                                                       : tr("not embedded; \"%1\" stands in").arg(font.standIn);
        group.append({font.name.isEmpty() ? tr("(no name)") : font.name, font.isEmbedded ? tr("embedded") : standIn});
    }
    if (list.more > 0)
        group.append({QString(), tr("Further fonts, not listed: %1").arg(list.more)});
    if (group.isEmpty())
        group.append({QString(), tr("The document names no fonts.")});
    return {tr("The fonts that the document itself names. Pages may bring further ones."), {group}};
}

PropertyGroup OfdTexts::ProblemGroup(const ofd::Problem& problem)
{
    const bool isInfo = ofd::SeverityOf(problem.kind) == ofd::ProblemSeverity::Info;
    PropertyGroup group{{isInfo ? tr("Note") : tr("Problem"), problem.text}};
    AddSaid(group, tr("Part"), problem.part);
    QStringList places;
    if (problem.offset >= 0)
        places += tr("byte %1").arg(problem.offset);
    if (problem.objectId != 0)
        places += tr("object %1").arg(quint32(problem.objectId));
    AddSaid(group, tr("Position"), places.join(QStringLiteral(", ")));
    if (problem.more > 0)
        group.append({QString(), tr("Further ones of this kind in this part: %1").arg(problem.more)});
    return group;
}

PropertySection OfdTexts::Problems(const ofd::OfdDocument& document)
{
    PropertySection section;
    for (const ofd::Problem& problem : document.GetProblems())
        section.groups.append(ProblemGroup(problem));
    section.note = section.groups.isEmpty()
                       ? tr("Nothing was wrong in what was read so far. Pages are looked at when they are shown.")
                       : tr("What was wrong in the file and was worked around, as far as it was read. Pages are looked "
                            "at when they are shown.");
    return section;
}

} // namespace

PropertySection OfdProperties(ofd::OfdDocument& document, PropertyTopic topic)
{
    switch (topic) {
    case PropertyTopic::Signatures:
        return OfdTexts::Signatures(document);
    case PropertyTopic::Fonts:
        return OfdTexts::Fonts(document);
    case PropertyTopic::Problems:
        return OfdTexts::Problems(document);
    case PropertyTopic::General:
        break;
    }
    return OfdTexts::General(document);
}
