#pragma once

#include <QObject>

// The base of tests that speak of pixels: sizes are in logical units as they are, whatever screen the test runs on.
class UnscaledTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
};
