#pragma once

#include <QFrame>
#include <QPointer>

class DocumentSearch;
class QCheckBox;
class QLabel;
class QLineEdit;
class QToolButton;

// The bar above the page view in which a text is looked for in the current document. Follows and steers the search of
// one tab; each tab's search keeps its own text and its own place.
class FindBar : public QFrame
{
    Q_OBJECT
public:
    explicit FindBar(QWidget* parent);
    // Shows the search of another tab, or nothing when that one's bar is closed. Null: no document.
    void SetSearch(DocumentSearch* newSearch);
    // Shows the bar with the text chosen, so that typing replaces it. A given text takes the place of the one there.
    void Open(const QString& text);
    // Goes to the next match, or to the previous one; opens the bar first when there is nothing to look for.
    void GoOn(bool isForward);
    void Close();

signals:
    void Closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QToolButton* AddButton(const QString& name, const QString& tooltip, Qt::ArrowType arrow);
    QCheckBox* AddChoice(const QString& text, const QString& tooltip);
    void Apply();
    void ShowState();
    QString StateText() const;
    void Colour(bool isMissing);

    QPointer<DocumentSearch> search;
    QLineEdit* box; // owned by this, as all below
    QLabel* state;  // "3 of 17"
    QCheckBox* caseChoice;
    QCheckBox* wordChoice;
    QToolButton* previousButton;
    QToolButton* nextButton;
    QString told; // the last state that was spoken
};
