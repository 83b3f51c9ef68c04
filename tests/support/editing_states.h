#pragma once

#include <QString>
#include <QtTest>

// Rows for a test of what depends on whether a document may be edited. Column "state" begins the document's text form;
// the other column holds `allowed` where it may be edited and `forbidden` where not.
template <typename T>
void AddEditingStates(const char* column, const T& allowed, const T& forbidden)
{
    QTest::addColumn<QString>("state");
    QTest::addColumn<T>(column);
    QTest::newRow("plain") << QString() << allowed;
    QTest::newRow("permissions that allow editing") << "rights edit=yes\n" << allowed;
    QTest::newRow("permissions that forbid editing") << "rights edit=no\n" << forbidden;
    QTest::newRow("read-only") << "readonly\n" << forbidden;
}
