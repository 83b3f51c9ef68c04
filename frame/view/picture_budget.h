#pragma once

#include <frame/base/export.h>

#include <QtGlobal>

#include <memory>

// The bytes that the pictures of all views take together: those that are kept and those that are being painted. Holds
// are taken on the main thread and may be let go on any.
class FRAME_EXPORT PictureBudget
{
public:
    // A share of the budget, given back by the destructor.
    class FRAME_EXPORT Hold
    {
    public:
        explicit Hold(qint64 bytes);
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        // Gives back what is more than this.
        void ShrinkTo(qint64 newBytes);
        qint64 Bytes() const { return bytes; }

    private:
        qint64 bytes;
    };

    static qint64 Bytes();
    static qint64 Limit();
    // Raises the limit to what a window of so many pixels needs; it is never lowered again.
    static void MakeFitFor(qint64 windowPixels);
    // For tests and for machines with little memory.
    static void SetLimit(qint64 bytes);
    // The most bytes since the last reset.
    static qint64 PeakBytes();
    static void ResetPeak();
};
