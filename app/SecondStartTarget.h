// What a second start of the program asks of the running one.
#pragma once

#include <wx/arrstr.h>

/// The running program, as the single-instance service sees it.
class SecondStartTarget {
public:
    virtual ~SecondStartTarget() = default;

    /// Whether new files can't come just now: a job runs, or a dialog waits for an answer.
    virtual bool IsBusy() const = 0;

    /// Starts a new series with these paths, of which there is at least one.
    virtual void AddFiles(const wxArrayString& paths) = 0;
};
