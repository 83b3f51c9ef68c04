#pragma once

class QApplication;

// The panes' and the bars' colours and icons are made for a light window, so on a dark desktop the program brings a
// light palette of its own; on a light one it leaves the desktop's.
void KeepWindowLight();

// Language, fonts and icon of the program. Installs the translators for the user's language (or $TETO_LANGUAGE) and
// replaces the font that style sheets and delegates name by the best CJK sans that is there.
void SetUpAppearance(QApplication& application);
