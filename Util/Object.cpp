// Reference counting of shared objects.
#include "Util/Object.h"

#include "Util/Assertion.h"

namespace LS::Util {

std::int32_t Object::ref()
{
    LS_ASSERT(this->__ref_count_ >= 0);
    return ++__ref_count_;
}

std::int32_t Object::unref()
{
    LS_ASSERT(this->__ref_count_ > 0);
    const std::int32_t nLeft = --__ref_count_;
    if (nLeft == 0)
        delete this;
    return nLeft;
}

} // namespace LS::Util
