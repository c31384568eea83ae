// The base of all objects whose ownership is shared.
#pragma once

#include <cstdint>

namespace LS::Util {

/// Counts who refers to it and deletes itself when the last reference goes.
///
/// A class takes part by deriving virtually. An object is made with `new`, starts at 0 references and
/// belongs to nobody until the first Handle takes it. The count is plain: all holders live on one thread.
class Object {
public:
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    /// Adds a reference. @return the new count
    std::int32_t ref();

    /// Takes a reference away; at 0 the object is gone when this returns. @return the new count
    std::int32_t unref();

    /// @return 1 if both are the same object, else 0; contents play no part
    int isSame(const Object* other) const { return this == other ? 1 : 0; }

private:
    std::int32_t __ref_count_ = 0;
};

} // namespace LS::Util
