#pragma once
/// \file
/// Parts of the dialogue's engine as commands run them: nothing of its screen shows.

#include <functional>
#include <string>

/// What a part of the engine said, its blanks and line ends as single blanks.
struct EngineTalk {
    std::string screen;  ///< on the dialogue's screen
    std::string errors;  ///< on standard error
};

/// Runs `body` with `out` and the console's streams kept from the user. An error that it raises,
/// an end of the process or an endless rest fails the command, with what was said about it.
EngineTalk RunEngine(const std::function<void()>& body);
