#pragma once

#include "outline_interceptors.h"

#include <QObject>

// Opens the current entry's editor in place of the operation; the rename runs when the edit ends. The double click on
// an entry begins one too.
class GPI_OutlineRename : public QObject, public OutlineInterceptor
{
    Q_OBJECT
public:
    explicit GPI_OutlineRename(NaviOutlineWidget* pane);
    ~GPI_OutlineRename() override;
    // False always.
    bool PrepareDataHandle(G_Operation* op, int flag) override;
    void AfterDoActionHandle(G_Operation* op) override;

public slots:
    // The edit of an entry ended: renames it when its text is another.
    void ItemChanged(QTreeWidgetItem* item, int column);
    void ItemDoubleClicked(QTreeWidgetItem* item, int column);

private:
    G_Operation* OwnOperation();
    void SetTitleSilently(QTreeWidgetItem* item, const QString& title);
    void Rename(const G_TreeNode* node, const QString& title);

    G_Operation* operation = nullptr;    // not owned; the frame keeps it while this interceptor may use it
    G_Operation* ownOperation = nullptr; // made here, handed back by the destructor
};
