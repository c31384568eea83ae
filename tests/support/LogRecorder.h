// Collects what reaches the library's log.
#pragma once

#include <string>
#include <vector>

#include <wx/log.h>

namespace LS::Tests {

/// Takes the place of the log's target as long as it lives.
class LogRecorder : public wxLog {
public:
    LogRecorder() : m_pPrevious(wxLog::SetActiveTarget(this)) {}
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;
    ~LogRecorder() override { wxLog::SetActiveTarget(m_pPrevious); }

    const std::vector<std::string>& Lines() const { return m_vsLines; }

protected:
    void DoLogRecord(wxLogLevel, const wxString& text, const wxLogRecordInfo&) override
    {
        m_vsLines.push_back(text.utf8_string());
    }

private:
    wxLog* m_pPrevious;
    std::vector<std::string> m_vsLines;
};

} // namespace LS::Tests
