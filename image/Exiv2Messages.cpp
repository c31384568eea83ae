// The one place that decides where Exiv2's messages go.
#include "image/Exiv2Messages.h"

#include "Util/Assertion.h"

#include <exiv2/error.hpp>

#include <string_view>

Exiv2Messages* Exiv2Messages::s_pReceiver = nullptr;

Exiv2Messages::Exiv2Messages() : m_previous(Exiv2::LogMsg::handler())
{
    LS_ASSERT(s_pReceiver == nullptr);
    s_pReceiver = this;
    Exiv2::LogMsg::setHandler(Receive);
}

Exiv2Messages::~Exiv2Messages()
{
    Exiv2::LogMsg::setHandler(m_previous);
    s_pReceiver = nullptr;
}

void Exiv2Messages::Receive(int nLevel, const char* szMessage)
{
    if (nLevel < Exiv2::LogMsg::error)
        return;
    std::string_view sMessage(szMessage);
    while (sMessage.ends_with('\n'))
        sMessage.remove_suffix(1);
    std::string& sErrors = s_pReceiver->m_sErrors;
    sErrors.append(sErrors.empty() ? "" : "; ").append(sMessage);
}
