// A home and a runtime folder of a test's own.
#pragma once

#include "tests/support/TempFolder.h"

#include <string>

namespace LS::Tests {

/// This process and its children live in it as long as it does.
class PrivateHome {
public:
    PrivateHome();
    PrivateHome(const PrivateHome&) = delete;
    PrivateHome& operator=(const PrivateHome&) = delete;
    ~PrivateHome();

    std::string Home() const { return m_folder.File("home"); }
    std::string Runtime() const { return m_folder.File("runtime"); }
    std::string Root() const { return m_folder.Path(); } ///< of both

private:
    TempFolder m_folder;
    std::string m_sOldHome, m_sOldRuntime;
};

} // namespace LS::Tests
