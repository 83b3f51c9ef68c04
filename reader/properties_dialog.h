#pragma once

#include "document_properties.h"

#include <QDialog>

class DocumentTab;
class QPlainTextEdit;
class QTabWidget;
class QTextEdit;

// Tells what a document says of itself, one tab a topic. Does not block the window. Shows what is known when a topic
// comes to the front; the size of the present page follows the view. Goes away with its document and deletes itself
// when closed.
class PropertiesDialog : public QDialog
{
    Q_OBJECT
public:
    // The tab must be open; it tells when it closes.
    PropertiesDialog(DocumentTab* tab, QWidget* parent);
    // Whose properties they are; null once it closed.
    DocumentTab* Tab() const { return tab; }
    // Reads the topic at the front anew.
    void Refresh();

private:
    void AddTextPage(const QString& title);
    void AddProblemsPage();
    void ShowTopic(int position);
    void ShowGeneral();
    void CopyProblems() const;
    void FitToScreen();
    void LetGo();

    DocumentTab* tab;        // not owned; null once it closed
    PropertySection general; // as last read
    QString generalShown;
    // Owned by their parents.
    QTabWidget* pages;
    QList<QTextEdit*> texts; // by topic; of all topics but the problems
    QPlainTextEdit* problems = nullptr;
};
