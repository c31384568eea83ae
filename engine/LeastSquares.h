// Linear least squares for systems that may lack rank.
#pragma once

#include <cstdint>
#include <span>

/// Solves min |A x - b| by singular values (LAPACK's dgelss), on one thread. Where the rank is short, to the
/// precision of the machine, x is the solution of least length.
///
/// @param vA       nRows x nColumns values, column by column; overwritten
/// @param vB       nRows values; on success the first nColumns are x
/// @param nRows    at least nColumns, which is above 0 (asserted)
/// @return 0, or LAPACK's INFO: above 0 where the singular values didn't converge, below 0 for a value that
/// is
///         not finite
std::int32_t SolveLeastSquares(std::span<double> vA, std::span<double> vB, std::int32_t nRows,
                               std::int32_t nColumns);
