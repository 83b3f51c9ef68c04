#include "scripted_context.h"

#include <QtTest>

ScriptedContext::ScriptedContext(QObject* parent)
    : G_UIContext(parent)
{
}

ScriptedContext::~ScriptedContext()
{
    if (!answers.isEmpty())
        QTest::qFail("an announced message box was never shown", __FILE__, __LINE__);
}

void ScriptedContext::Answer(int button)
{
    answers.append(button);
}

void ScriptedContext::SetWhileOpen(std::function<void(const AskedBox&)> meanwhile)
{
    whileOpen = std::move(meanwhile);
}

void ScriptedContext::AnswerAllWith(int button)
{
    answersAll = true;
    answerToAll = button;
}

int ScriptedContext::ShowInformationBox(const QString& title, const QString& text, int buttons, int defaultButton,
                                        const QMap<int, QString>& captions, const QSize& /*size*/)
{
    return Take({QStringLiteral("information"), title, text, buttons, defaultButton, captions});
}

int ScriptedContext::ShowMessageBox(const QString& title, const QString& text, int buttons, int defaultButton,
                                    const QMap<int, QString>& captions, const QSize& /*size*/)
{
    return Take({QStringLiteral("message"), title, text, buttons, defaultButton, captions});
}

int ScriptedContext::ShowQuestionBox(const QString& title, const QString& text, int buttons, int defaultButton,
                                     const QMap<int, QString>& captions, const QSize& /*size*/)
{
    return Take({QStringLiteral("question"), title, text, buttons, defaultButton, captions});
}

int ScriptedContext::Take(const AskedBox& box)
{
    asked.append(box);
    if (whileOpen)
        whileOpen(box);
    if (!answers.isEmpty())
        return answers.takeFirst();
    if (answersAll)
        return answerToAll;
    const QByteArray failure = "unexpected message box: " + box.title.toUtf8() + " / " + box.text.toUtf8();
    QTest::qFail(failure.constData(), __FILE__, __LINE__);
    return 2097152; // as if closed by its frame
}
