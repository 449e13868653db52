#pragma once

#include <QChar>
#include <QString>

// Characters of formatted measurement values. Each is a single UTF-16 code unit.
constexpr QChar kDotChar = QChar(0x2219);      // multiplication dot before "10"
constexpr QChar kSupMinusChar = QChar(0x0304); // combining macron: raised minus, placed after a space
constexpr QChar kSupThreeChar = QChar(0x00B3); // exponent 3
constexpr QChar kSupSixChar = QChar(0x2076);   // exponent 6
constexpr QChar kSupTwoChar = QChar(0x00B2);   // squared units
constexpr QChar kSupZeroChar = QChar(0x00B0);  // degree sign of the angle unit
constexpr QChar kMicromtrChar = QChar(0x03BC); // mu of the micrometre unit

// Fixed-point text of aValue / aDivisor with as many decimals as aDivisor has zeros
// (1, 10, 100, 1000, 10000 -> 0..4 decimals), always "." as separator, followed by
// "∙10", a raised minus for a negative exponent and the superscript digit for |exponent|
// 3 or 6 (other exponents get no digit). Exponent 0 adds nothing. A value of 0 prints "0".
// A divisor below 1 is treated as 1.
QString formatValue(int aValue, int aDivisor, int anExponent);

// Display texts of a value already expressed in the target unit. Each picks a precision and
// a power-of-ten suffix from the magnitude; the four share the bands from 10000 upwards.
// Values too large for an int are clamped, NaN prints "0".
QString calcDisplayValueMm(double aValue);
QString calcDisplayValueMil(double aValue);
QString calcDisplayValueUm(double aValue);
QString calcDisplayValueNm(double aValue);
