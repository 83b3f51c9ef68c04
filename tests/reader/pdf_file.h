#pragma once

#include <QByteArray>
#include <QImage>
#include <QSizeF>
#include <QString>
#include <QVector>

// As much of a PDF file as a test of printing asks for. Reads what Qt writes, no other PDF.
struct PdfFile
{
    // Fails the test when there is no such file or when it is not whole.
    static PdfFile Read(const QString& path);
    QVector<QSizeF> pageSizes; // in points
    QVector<QImage> pictures;  // those that are kept without loss, in the order of the file
};
