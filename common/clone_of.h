#pragma once

// What every operation's Clone answers: a new object of its class with the parameters copied. Owned by the caller.
template <typename Operation>
Operation* CloneOf(const Operation* operation)
{
    auto* copy = new Operation;
    copy->CopyFrom(operation);
    return copy;
}
