#pragma once

class QApplication;

// Language, fonts and icon of the program. Installs the translators for the user's language (or $TETO_LANGUAGE) and
// replaces the font that style sheets and delegates name by the best CJK sans that is there.
void SetUpAppearance(QApplication& application);
