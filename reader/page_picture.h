#pragma once

#include "background_job.h"

class IG_Document;
class IG_PageRenderer;

// A picture of a page that is to be written.
struct PictureOrder
{
    int page = 0;
    int dotsPerInch = 150;
    int rotation = 0; // degrees clockwise
    bool withAnnotations = true;
    QString path; // its ending says the format; PNG when it says none
};

// Why no pictures may be made of the document, for the user; empty when they may.
QString PictureRefusal(IG_Document& document);

// Paints and writes, on whichever thread it is called. A file that is there is replaced when the new one is complete.
JobOutcome SavePicture(IG_PageRenderer& renderer, const PictureOrder& order, const JobControl& control);
