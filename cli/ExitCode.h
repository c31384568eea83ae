// How the program ends; the help text documents the numbers.
#pragma once

enum class ExitCode : int {
    Done = 0,
    Usage = 1,       ///< the command line is wrong
    Input = 2,       ///< a photograph, its exposure or a curve file is unusable
    Merge = 3,       ///< the engine failed, or its working files couldn't be written
    Write = 4,       ///< an output can't be written
    Partly = 5,      ///< of the series of a folder at least one failed; each is told
    Cancelled = 130, ///< interrupted, as a shell reports it
};
