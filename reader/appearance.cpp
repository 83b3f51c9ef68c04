#include "appearance.h"

#include <QApplication>
#include <QDir>
#include <QFontDatabase>
#include <QIcon>
#include <QLibraryInfo>
#include <QPalette>
#include <QTranslator>

namespace {

// What the add-on's lists name; replaced where the machine has no such font.
const char namedFont[] = "Microsoft YaHei";

const char* const cjkSans[] = {"Noto Sans CJK SC",  "Source Han Sans SC",  "WenQuanYi Micro Hei",
                               "WenQuanYi Zen Hei", "Droid Sans Fallback", "Noto Sans CJK JP"};

void SubstituteNamedFont()
{
    const QStringList families = QFontDatabase().families();
    if (families.contains(QLatin1String(namedFont)))
        return;
    for (const char* family : cjkSans) {
        if (families.contains(QLatin1String(family))) {
            QFont::insertSubstitution(QLatin1String(namedFont), QLatin1String(family));
            return;
        }
    }
}

void InstallTranslator(QApplication& application, const QString& name, const QString& folder)
{
    const QString language = qEnvironmentVariable("TETO_LANGUAGE");
    const QLocale locale = language.isEmpty() ? QLocale() : QLocale(language);
    auto* translator = new QTranslator(&application);
    if (translator->load(locale, name, QStringLiteral("_"), folder))
        QApplication::installTranslator(translator);
    else
        delete translator; // English, the texts' own language
}

} // namespace

void KeepWindowLight()
{
    constexpr int darkest = 128; // of 255
    const QPalette palette = QApplication::palette();
    if (palette.color(QPalette::Window).lightness() >= darkest && palette.color(QPalette::Base).lightness() >= darkest)
        return;
    QPalette light(QColor(0xEF, 0xEF, 0xEF));
    light.setColor(QPalette::Highlight, QColor(0x2F, 0x6F, 0xDE));
    light.setColor(QPalette::Link, QColor(0x2F, 0x6F, 0xDE));
    QApplication::setPalette(light);
}

void SetUpAppearance(QApplication& application)
{
    application.setApplicationName(QStringLiteral("tetoreader"));
    application.setOrganizationName(QStringLiteral("tetobaisfla"));
    application.setApplicationVersion(QStringLiteral(TETO_VERSION));
    application.setWindowIcon(QIcon(QStringLiteral(":/reader/image/tetoreader.svg")));
    InstallTranslator(application, QStringLiteral("qtbase"), QLibraryInfo::location(QLibraryInfo::TranslationsPath));
    const QDir programs(QApplication::applicationDirPath());
    InstallTranslator(application, QStringLiteral("tetobaisfla"), programs.filePath(QStringLiteral("languages")));
    SubstituteNamedFont();
    KeepWindowLight();
}
