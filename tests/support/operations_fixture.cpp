#include "operations_fixture.h"

#include <frame/base/log.h>
#include <frame/operation/event_manager.h>

#include <algorithm>

void OperationsFixtureBase::init()
{
    lines.clear();
    SetFrameLogListener([this](const QByteArray& line) { lines.append(line); });
    DeskNavigation::Forget();
    MakeOperations();
    navigation = std::make_unique<DeskNavigation>();
    navigation->RegisterToGlobal();
}

void OperationsFixtureBase::cleanup()
{
    probe.reset();
    fixture.reset();
    DeleteOperations();
    navigation.reset();
    SetFrameLogListener({});
}

void OperationsFixtureBase::Open(const QString& text)
{
    probe.reset();
    fixture = std::make_unique<ViewFixture>(text);
    probe = std::make_unique<EventProbe>(fixture->Context()->EventMgr());
}

bool OperationsFixtureBase::WasLogged(const QByteArray& start) const
{
    return std::any_of(lines.cbegin(), lines.cend(),
                       [&start](const QByteArray& line) { return line.startsWith(start); });
}
