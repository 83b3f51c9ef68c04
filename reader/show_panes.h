#pragma once

#include <QString>

class MainWindow;

// Opens each pane of the current document in turn, writes a picture of the window for each into the folder and prints
// what each pane lists. For machines without a display. False when a picture could not be written.
bool ShowPanes(MainWindow* window, const QString& folder);
