// Where text stands: in templates, and without distances between the characters.
#include "features.h"

namespace samples {

namespace {

QByteArray Text(int id, int x, int y, const QByteArray& letters, const QByteArray& attributes = {},
                const QByteArray& deltas = "DeltaX=\"g 40 3\"")
{
    return "<ofd:TextObject ID=\"" + QByteArray::number(id) + "\" Font=\"1\" Size=\"5\" Boundary=\"" +
           QByteArray::number(x) + " " + QByteArray::number(y) + " 100 6\" " + attributes +
           "><ofd:TextCode X=\"0\" Y=\"4\" " + deltas + ">" + letters + "</ofd:TextCode></ofd:TextObject>";
}

void FormInTemplate(Package& package)
{
    const QByteArray labels = Text(950, 20, 20, "Letterhead") + Text(951, 20, 110, "Number:") +
                              Text(952, 20, 120, "Name:") + Text(953, 20, 280, "Footer");
    package.Replace(kTemplate, "</ofd:Layer>", labels + "</ofd:Layer>");
    AddToFirstPage(package, Text(900, 60, 110, "4711") + Text(901, 60, 120, "Miller"));
}

void ReadDownwards(Package& package)
{
    AddToFirstPage(package, Text(900, 20, 110, "ABC", "ReadDirection=\"90\"", ""));
}

constexpr const char* kGroup = "Text";

const Deviation kTable[] = {
    {"form_in_template", kGroup, "labels in the template, values on the page",
     "read each label before its value, the letterhead first and the footer last", FormInTemplate},
    {"text_read_downwards", kGroup, "upright characters without distances that are read downwards",
     "set them below each other", ReadDownwards},
};

} // namespace

std::vector<Deviation> TextFeatures()
{
    return {std::begin(kTable), std::end(kTable)};
}

} // namespace samples
