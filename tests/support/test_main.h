#pragma once

#include <QObject>

#include <functional>

// Runs one test class with QTest under an offscreen application and fails the run when Qt printed a warning about a
// connect: string-form connects are checked only at run time, so nothing else would notice a misspelled slot.
int RunTests(int argc, char** argv, const std::function<QObject*()>& makeTest);

// Defines main() for a test class that has a default constructor.
#define TETO_TEST_MAIN(TestClass)                                                                                      \
    int main(int argc, char** argv)                                                                                    \
    {                                                                                                                  \
        return RunTests(argc, argv, [] { return new TestClass; });                                                     \
    }
