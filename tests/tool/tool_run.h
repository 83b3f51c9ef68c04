#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QStringList>

// What a run of the program came to.
struct ToolRun
{
    int exitCode = -1; // -1: it did not end by itself
    QByteArray out;
    QByteArray errors;

    // The answer of a run with --json; empty when it is no JSON.
    QJsonObject Json() const;
    QStringList Lines() const;
};

// Runs the built tetotool without a display and waits for it.
ToolRun RunTool(const QStringList& arguments);
// The same in a shell, which may redirect it: "%1" stands for the program.
ToolRun RunInShell(const QString& commandLine);
