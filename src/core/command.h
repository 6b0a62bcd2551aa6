#pragma once

#include <functional>

namespace lx {

// Runs the logic of one user command. A record store failure that the command doesn't
// handle itself ends the command with a critical message showing the error's number and
// description; what was written before stays, and the program goes on.
void RunCommand(const std::function<void()> &command);

// A handler for a signal that runs `method` of `receiver` as a command.
template <class Receiver> auto Command(Receiver *receiver, void (Receiver::*method)())
{
    return [receiver, method] { RunCommand([receiver, method] { (receiver->*method)(); }); };
}

} // namespace lx
