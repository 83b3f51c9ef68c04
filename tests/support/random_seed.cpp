#include "random_seed.h"

#include <QRandomGenerator>
#include <QString>

quint32 RandomSeed()
{
    bool isGiven = false;
    const quint32 given = qEnvironmentVariable("TETO_SEED").toUInt(&isGiven);
    const quint32 seed = isGiven ? given : QRandomGenerator::global()->generate();
    qInfo("seed %u (TETO_SEED repeats it)", seed);
    return seed;
}
