#pragma once

#include <QMap>
#include <QMessageBox>
#include <QSize>
#include <QString>

// A message box that can always be closed by its frame, and tells that apart from its buttons.
class G_MessageBox : public QMessageBox
{
    Q_OBJECT
public:
    // `buttons` and `defaultButton` as in G_UIContext::ShowMessageBox.
    G_MessageBox(Icon icon, const QString& title, const QString& text, int buttons, QWidget* parent);
    void SetDefault(int button);
    void SetCaptions(const QMap<int, QString>& captions);
    void SetSize(const QSize& size);
    // The value of the pressed button; that of Close when the box went without one. The box may be gone afterwards.
    int Run();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    bool wasClosedByFrame = false;
};
