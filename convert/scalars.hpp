// Numeric scalars and logical flags from host arrays, with the library's checks:
// a non-empty numeric scalar, no NaN/Inf (unless a fill value), truncation toward zero,
// and boost::numeric::bad_numeric_cast when the value does not fit T.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "qvhost/array.hpp"

// A fill value may be NaN or Inf, and an empty fill value for a floating type has an
// error of its own.
enum class ScalarUse { Plain, FillValue };

// T is one of int, size_t, double, float, long long, unsigned long long, unsigned int,
// unsigned short, short, unsigned char, signed char.
template <class T>
T getScalar(const qvArray* a, const std::string& name, ScalarUse use = ScalarUse::Plain);

// Taken as they stand, without checks: the first element of an int32 array, or of a
// double array truncated; empty for other classes.
std::optional<int> getRawInt(const qvArray* a);
// The first four bytes of a's data as a single, never reading past its data block.
float getRawSingle(const qvArray* a);

bool getLogicalFlag(const qvArray* a, const std::string& name);

// Raises invalidNaNInfForIntegerType(name) at the first NaN or Inf among the first
// count doubles of a. a must be double.
void checkFiniteForInteger(const qvArray* a, std::ptrdiff_t count, const std::string& name);
