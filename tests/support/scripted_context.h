#pragma once

#include <frame/view/ui_context.h>

#include <QList>
#include <QStringList>

// A message box that was asked for.
struct AskedBox
{
    QString kind; // "information", "message" or "question"
    QString title;
    QString text;
    int buttons = 0;
    int defaultButton = -1;
    QMap<int, QString> captions;
};

// A context whose message boxes are answered from a list instead of being shown. A box that nobody announced makes the
// running test fail and gets the default answer.
class ScriptedContext : public G_UIContext
{
    Q_OBJECT
public:
    explicit ScriptedContext(QObject* parent = nullptr);
    ~ScriptedContext() override; // fails the test when announced answers were never asked for

    // Announces the answer to the next unanswered box.
    void Answer(int button);
    // Runs just ahead of every answer, while the box would be up: for what a user or a timer does meanwhile.
    void SetWhileOpen(std::function<void(const AskedBox&)> whileOpen);
    // Answers boxes that were not announced with this button and without a failure.
    void AnswerAllWith(int button);
    QList<AskedBox> Asked() const { return asked; }
    AskedBox LastAsked() const { return asked.isEmpty() ? AskedBox() : asked.last(); }
    void ForgetAsked() { asked.clear(); }

    int ShowInformationBox(const QString& title, const QString& text, int buttons, int defaultButton,
                           const QMap<int, QString>& captions = {}, const QSize& size = {}) override;
    int ShowMessageBox(const QString& title, const QString& text, int buttons, int defaultButton,
                       const QMap<int, QString>& captions = {}, const QSize& size = {}) override;
    int ShowQuestionBox(const QString& title, const QString& text, int buttons, int defaultButton,
                        const QMap<int, QString>& captions = {}, const QSize& size = {}) override;

    // As in a larger office suite, when set.
    bool IsLarkmerePlugin() const override { return isLarkmere; }
    bool isLarkmere = false;

private:
    int Take(const AskedBox& box);

    QList<int> answers;
    QList<AskedBox> asked;
    std::function<void(const AskedBox&)> whileOpen;
    bool answersAll = false;
    int answerToAll = 0;
};
