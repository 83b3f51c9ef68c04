// The container: every part of whatever opens is read.
#include <ofd/package/package.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const auto package = ofd::Package::OpenBytes(bytes);
    if (!package)
        return 0;
    const QStringList names = package->GetPartNames();
    for (const QString& name : names)
        package->Read(name);
    return 0;
}
