// The one place that decides where Exiv2's messages go.
#pragma once

#include <string>

/// Collects what Exiv2 says as long as it lives, where the library would print to the error stream. The
/// library knows one receiver per process, so only one of these may live at a time.
class Exiv2Messages {
public:
    Exiv2Messages();
    Exiv2Messages(const Exiv2Messages&) = delete;
    Exiv2Messages& operator=(const Exiv2Messages&) = delete;
    ~Exiv2Messages();

    /// The errors so far, in one line. Warnings are dropped: many cameras' sound files bring some.
    const std::string& Errors() const { return m_sErrors; }

private:
    using Handler = void (*)(int nLevel, const char* szMessage);
    static void Receive(int nLevel, const char* szMessage);

    static Exiv2Messages* s_pReceiver;
    std::string m_sErrors;
    Handler m_previous;
};
