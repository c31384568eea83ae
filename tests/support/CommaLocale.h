// A locale that writes numbers with a comma.
#pragma once

#include "tests/support/TempFolder.h"

namespace LS::Tests {

/// While it lives the C library speaks French, as after a library's call of setlocale. The locale is made in
/// a private folder, since a bare system has none.
class CommaLocale {
public:
    CommaLocale();
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale();

    bool IsOk() const { return m_bOk; } ///< whether numbers really have a comma now

private:
    TempFolder m_folder;
    bool m_bOk = false;
};

} // namespace LS::Tests
