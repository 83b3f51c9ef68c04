#pragma once

#include <vector>

// One object that the add-on registers. The rows stand in the order of creation; pages come first.
struct Registration
{
    const char* name;       // the registered name, or the page's object name
    void* (*make)();        // makes the object and registers it
    void (*destroy)(void*); // deletes what `make` made
    int teardown;           // position in the order of teardown, from 1; gaps belong to panes to come
};

// All rows, made once.
const std::vector<Registration>& RegistrationTable();

// Where the plugin's spare pointer stands in the order of teardown.
constexpr int SpareTeardown = 39;
