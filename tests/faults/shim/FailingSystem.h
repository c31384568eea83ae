// Lets the n-th system call or allocation of this process fail.
#pragma once

/// From here on calls of a kind count: "write", "read", "close", "fsync", "rename" or "malloc".
/// @param nFirst    the first one that fails, counted from 1
/// @param bLasting  whether all later ones fail as well
void LetCallsFail(const char* szKind, long nFirst, bool bLasting);

/// All calls work again. @return whether the one that was to fail came
bool EndFailing();
