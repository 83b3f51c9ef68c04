// One XML part.
#include <ofd/package/xml_part.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const auto part = ofd::XmlPart::Parse(QStringLiteral("Doc_0/Part.xml"), bytes);
    if (part)
        part->PlaceOf(part->GetRoot());
    return 0;
}
